#include "tests/disk/faults/till_day.h"

#include "host/facilities/config.h"
#include "host/facilities/current_time.h"
#include "host/framework/basic_plugin.h"
#include "till/desk/cashier.h"
#include "till/framework/contract.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QMap>

#include <functional>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

class StandingTime : public CurrentTime {
public:
    [[nodiscard]] QDateTime getCurrentTime() const override
    {
        return QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9));
    }
};

class FixedConfig : public Config {
public:
    [[nodiscard]] QString getString(const QString& key, const QString& defaultValue) override
    {
        static const QMap<QString, QString> values {
            { u"Vantiro:hosts"_s, u"http://server/"_s },
            { u"Vantiro:checkCouponPrefix"_s, u"c-"_s },
        };
        return values.value(key, defaultValue);
    }
};

StandingTime& standingTime()
{
    static StandingTime time;
    return time;
}

[[nodiscard]] till::Delivery::Settings deliverySettings()
{
    till::Delivery::Settings settings;
    settings.servers = { QUrl(u"http://server/"_s) };
    return settings;
}

} // namespace

TillDay::TillDay(const QString& pluginFile, const QString& folder)
    : loader(pluginFile)
    , delivery(deliverySettings())
{
    till::takeChequeThread();
    MockFactory<CurrentTime>::mocked = &standingTime();
    static FixedConfig config;
    Singleton<Config>::instance = &config;
    till::setCashier({ [this](const QString& text) { lines.append(text); },
                       [](const QString&) { return std::optional<QString>(); }, [](const QString&) {} });
    till::store::open(folder);
    auto* const plugin = qobject_cast<BasicPlugin*>(loader.instance());
    if (plugin == nullptr || !plugin->init()) {
        throw std::runtime_error("the plug-in cannot be used: " + loader.errorString().toStdString());
    }
    theCheckout = std::make_unique<till::Checkout>();
}

TillDay::~TillDay()
{
    theCheckout.reset();
    qobject_cast<BasicPlugin*>(loader.instance())->deinit();
    loader.unload();
    till::store::close();
    MockFactory<CurrentTime>::mocked = nullptr;
}

QStringList TillDay::story(const QString& name)
{
    static const QMap<QString, QString> stories {
        { u"sale"_s, u"open scan scan-other remove-first scan card request coupon points cash close"_s },
        { u"outage"_s, u"open scan card down cash close up deliver"_s },
        { u"no-card"_s, u"open scan down cash close up deliver"_s },
        { u"rolled-back"_s, u"open scan scan-other card points roll-back certificate cash close"_s },
        { u"cancelled"_s, u"open scan scan-other card points cancel down open scan cancel up deliver"_s },
        { u"set-aside"_s, u"open scan card request coupon delete-coupon put-out reveal cash close"_s },
        { u"return"_s, u"open scan card cash close open-return-of take-back cash close"_s },
    };
    return stories.value(name).split(u' ', Qt::SkipEmptyParts);
}

void TillDay::scan(const QString& code, double price, double quantity)
{
    till::Checkout::Article article;
    article.code = code;
    article.barcode = u"46"_s + code;
    article.price = price;
    article.quantity = quantity;
    theCheckout->scan(article);
}

bool TillDay::perform(const QString& step)
{
    till::Checkout& till = *theCheckout;
    const auto done = [](const std::function<void()>& call) {
        return [call] {
            call();
            return true;
        };
    };
    const QMap<QString, std::function<bool()>> steps {
        { u"open"_s, done([&till] { till.openSale({}); }) },
        { u"scan"_s, done([this] { scan(u"1"_s, 89.90, 2.0); }) },
        { u"scan-other"_s, done([this] { scan(u"2"_s, 450.00, 1.0); }) },
        { u"remove-first"_s, done([&till] { till.remove(1); }) },
        { u"card"_s, [&till] { return till.presentCard(u"9000000001"_s); } },
        { u"request"_s, [&till] { return till.request(); } },
        { u"coupon"_s, [&till] { return till.addCoupon(u"c-1"_s); } },
        { u"delete-coupon"_s, [&till] { return till.deleteCoupon(u"c-1"_s); } },
        { u"points"_s, [&till] { return till.payPoints({}); } },
        { u"roll-back"_s, [&till] { return till.rollback(); } },
        { u"certificate"_s, done([&till] { till.payCertificate(u"70001"_s, 100.0); }) },
        { u"cash"_s, done([&till] { till.payCash({}); }) },
        { u"close"_s, [&till] { return till.close(); } },
        { u"cancel"_s, [&till] { return till.cancel(); } },
        { u"put-out"_s, done([&till] { till.putOut(); }) },
        { u"reveal"_s, done([&till] { till.reveal(1, {}); }) },
        { u"open-return-of"_s, done([&till] { till.openReturnOf(1, {}); }) },
        { u"take-back"_s, done([&till] { till.takeBack(1, 1.0); }) },
        { u"down"_s, done([this] { service.down = true; }) },
        { u"up"_s, done([this] { service.down = false; }) },
        { u"deliver"_s,
          [this] {
              static_cast<void>(delivery.run(true));
              return till::store::queueRecords().isEmpty();
          } },
    };
    return steps.value(step)();
}

till::Checkout& TillDay::checkout()
{
    return *theCheckout;
}

QStringList TillDay::shown()
{
    return std::exchange(lines, {});
}
