#include "bench/sale/shop.h"

#include "bench/common/replies.h"
#include "till/desk/cashier.h"
#include "till/facilities/config_file.h"
#include "till/facilities/log_setup.h"
#include "till/store/store.h"

#include <QFile>

#include <stdexcept>

namespace {

constexpr double points = 30.0; // what the service takes

void require(bool done, const char* step)
{
    if (!done) {
        throw std::runtime_error(std::string("a step of a sale was not done: ") + step);
    }
}

void configure(const QString& name, const QList<QUrl>& services)
{
    QByteArrayList hosts;
    for (const QUrl& service : services) {
        hosts.append(service.toEncoded());
    }
    QFile file(name);
    require(file.open(QIODevice::WriteOnly), "configuration");
    file.write("[Vantiro]\nhosts=" + hosts.join(',') + "\ncheckCouponPrefix=c-\npositionCouponPrefix=p-\n");
}

[[nodiscard]] till::Cashier silentCashier()
{
    return { [](const QString&) {}, [](const QString&) { return std::nullopt; }, [](const QString&) {} };
}

} // namespace

Shop::Shop(int itsLineCount)
    : lineCount(itsLineCount)
    , server(std::make_unique<CannedServer>(repliesToSale(itsLineCount)))
{
    start({ server->url() });
}

Shop::Shop(int itsLineCount, const QList<QUrl>& services)
    : lineCount(itsLineCount)
{
    start(services);
}

void Shop::start(const QList<QUrl>& services)
{
    const QString config = folder.filePath(QStringLiteral("till.ini"));
    configure(config, services);
    till::setConfigFile(config);
    till::setUpLogging({ .file = folder.filePath(QStringLiteral("till.log")), .console = false });
    till::setCashier(silentCashier());
    till::store::open(folder.filePath(QStringLiteral("data")));
    thePlugin = std::make_unique<Vantiro>();
    require(thePlugin->init(), "init");
    theTill = std::make_unique<till::Checkout>();
}

Shop::~Shop()
{
    theTill.reset();
    thePlugin->deinit();
    thePlugin.reset();
    till::store::close();
    till::setUpLogging({ .threshold = till::LogLevel::warn }); // the folder of the log goes
}

void Shop::enterLines(std::optional<int> number)
{
    theTill->openSale(number);
    for (int position = 1; position <= lineCount; ++position) {
        till::Checkout::Article article;
        article.code = QString::number(1000 + position);
        article.barcode = QStringLiteral("46000510%1").arg(position, 5, 10, QLatin1Char('0'));
        article.price = 89.90 + position;
        article.quantity = 1.0 + position % 2;
        theTill->scan(article);
    }
}

void Shop::sell()
{
    require(theTill->presentCard(QStringLiteral("9000000001")), "card");
    require(theTill->request(), "request");
    require(theTill->addCoupon(QStringLiteral("c-1")), "coupon");
    require(theTill->payPoints(points), "points");
    theTill->payCash(std::nullopt);
    require(theTill->close(), "close");
}

CannedServer& Shop::service()
{
    return *server;
}

till::Checkout& Shop::till()
{
    return *theTill;
}

Vantiro& Shop::plugin()
{
    return *thePlugin;
}
