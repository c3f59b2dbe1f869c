#include "tests/checkout/checkout_till.h"

#include "host/framework/activity_notifier.h"
#include "tests/support/document_builder.h"
#include "till/desk/cashier.h"
#include "till/desk/desk_error.h"
#include "till/money/kopecks.h"
#include "till/store/document_states.h"
#include "till/store/queue_records.h"
#include "till/store/store.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] QString money(double sum)
{
    return QString::number(sum, 'f', 2);
}

[[nodiscard]] QString stateName(till::store::DocumentState state)
{
    using enum till::store::DocumentState;
    switch (state) {
    case open:
        return u"open"_s;
    case closing:
        return u"closing"_s;
    case aside:
        return u"aside"_s;
    case closed:
        return u"closed"_s;
    case cancelling:
        return u"cancelling"_s;
    case cancelled:
        return u"cancelled"_s;
    case damaged:
        return u"damaged"_s;
    }
    return {};
}

void run(const QString& statement)
{
    QSqlQuery query = till::store::prepare(statement);
    till::store::execute(query);
}

[[nodiscard]] int writesLeft()
{
    QSqlQuery query = till::store::prepare(u"SELECT writes FROM countdown"_s);
    till::store::execute(query);
    return query.next() ? query.value(0).toInt() : -1;
}

constexpr int plenty = 1'000'000;

}

/// The plug-in, with its hooks told to the journal.
class CheckoutTill::WatchedVantiro : public Vantiro {
public:
    explicit WatchedVantiro(CheckoutTill& itsOwner)
        : owner(itsOwner)
    {
    }

    bool identifyByCard(QSharedPointer<DocumentCardRecord>& card, ECardNumberType type) override
    {
        owner.write(u"hook identifyByCard"_s);
        return Vantiro::identifyByCard(card, type);
    }

    CardNumberResult getCardNumber(const loyalty::CardNumberInputData& input) override
    {
        owner.write(u"hook getCardNumber"_s);
        return Vantiro::getCardNumber(input);
    }

    bool request(const QSharedPointer<AbstractDocument>& doc) override
    {
        owner.write(u"hook request"_s);
        return Vantiro::request(doc);
    }

    bool commit(const QSharedPointer<AbstractDocument>& doc) override
    {
        owner.write(u"hook commit"_s);
        return Vantiro::commit(doc);
    }

    bool rollback(const QSharedPointer<AbstractDocument>& doc) override
    {
        owner.write(u"hook rollback"_s);
        return Vantiro::rollback(doc);
    }

    bool cancel() override
    {
        owner.write(u"hook cancel"_s);
        return Vantiro::cancel();
    }

    bool hasPointsForSpend() override
    {
        owner.write(u"hook hasPointsForSpend"_s);
        return Vantiro::hasPointsForSpend();
    }

    double getPointsForSpend(const QSharedPointer<AbstractDocument>& doc) override
    {
        owner.write(u"hook getPointsForSpend"_s);
        return Vantiro::getPointsForSpend(doc);
    }

    void setPointsForSpend(const QSharedPointer<AbstractDocument>& doc, double points) override
    {
        owner.write(u"hook setPointsForSpend "_s + ::money(points));
        Vantiro::setPointsForSpend(doc, points);
    }

    bool spendPoints() override
    {
        owner.write(u"hook spendPoints"_s);
        return Vantiro::spendPoints();
    }

    void clearAfterClose() override
    {
        owner.write(u"hook clearAfterClose"_s);
        Vantiro::clearAfterClose();
    }

    void beforePutoutCheck() override
    {
        owner.write(u"hook beforePutoutCheck"_s);
        Vantiro::beforePutoutCheck();
    }

    void afterPutoutCheck() override
    {
        owner.write(u"hook afterPutoutCheck"_s);
        Vantiro::afterPutoutCheck();
    }

    void revealCheck() override
    {
        owner.write(u"hook revealCheck"_s);
        Vantiro::revealCheck();
    }

private:
    CheckoutTill& owner;
};

class CheckoutTill::Listener : public BaseActivityListener {
public:
    explicit Listener(CheckoutTill& itsOwner)
        : BaseActivityListener(nullptr)
        , owner(itsOwner)
    {
        Singleton<ActivityNotifier>::get()->subscribe(this);
    }

    void handleEvent(const Event& event) override
    {
        owner.write(u"event "_s + QString::number(event.getCode()));
    }

private:
    CheckoutTill& owner;
};

CheckoutTill::CheckoutTill(const Settings& settings)
    : clock(at("2024-03-05T14:08:00"))
{
    config.set(u"Vantiro:hosts"_s, u"http://server/"_s);
    config.set(u"Vantiro:checkCouponPrefix"_s, u"c-"_s);
    config.set(u"Vantiro:positionCouponPrefix"_s, u"p-"_s);
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        config.set(setting.key(), setting.value());
    }
    service.within = [this](const QString& action) { write(u"post "_s + action); };
    till::Cashier cashier;
    cashier.show = [this](const QString& text) { write(u"show "_s + text); };
    cashier.handOver = [this](const QString& slip) { write(u"slip "_s + slip.trimmed()); };
    cashier.ask = [this](const QString& prompt) -> std::optional<QString> {
        write(u"ask "_s + prompt);
        return answers.isEmpty() ? std::nullopt : std::optional(answers.takeFirst());
    };
    till::setCashier(cashier);

    till::store::open(place.filePath(u"till"_s));
    run(u"PRAGMA synchronous = OFF"_s); // a process dies here, the power does not
    run(u"CREATE TABLE countdown (writes INTEGER NOT NULL)"_s);
    run(u"INSERT INTO countdown VALUES (%1)"_s.arg(plenty));
    for (const QString& table : { u"documents"_s, u"queue"_s }) {
        run(u"CREATE TRIGGER fail_%1 BEFORE INSERT ON %1 BEGIN "
            "SELECT RAISE(ABORT, 'disk full') WHERE (SELECT writes FROM countdown) = 0; "
            "UPDATE countdown SET writes = writes - 1; END"_s.arg(table));
    }
    listener = std::make_unique<Listener>(*this);
    start();
    static_cast<void>(told());
}

CheckoutTill::~CheckoutTill()
{
    theCheckout.reset();
    thePlugin.reset();
    till::setCashier(till::terminalCashier());
    till::store::close();
}

void CheckoutTill::start()
{
    thePlugin = std::make_unique<WatchedVantiro>(*this);
    EXPECT_TRUE(thePlugin->init());
    theCheckout = std::make_unique<till::Checkout>();
}

void CheckoutTill::restart()
{
    theCheckout.reset();
    thePlugin.reset();
    repairStore();
    start();
    static_cast<void>(told());
}

till::Checkout& CheckoutTill::till() const
{
    return *theCheckout;
}

Vantiro& CheckoutTill::plugin() const
{
    return *thePlugin;
}

void CheckoutTill::write(const QString& line)
{
    journal.append(line);
}

std::string CheckoutTill::told(const QString& beginning)
{
    QStringList lines = std::exchange(journal, {});
    lines.removeIf([&beginning](const QString& line) { return !line.startsWith(beginning); });
    return lines.join(u'\n').toStdString();
}

void CheckoutTill::scan(const QString& code, double price, double quantity)
{
    till::Checkout::Article article;
    article.code = code;
    article.barcode = u"46"_s + code;
    article.price = price;
    article.quantity = quantity;
    till().scan(article);
}

void CheckoutTill::openSale(int number)
{
    till().openSale(number);
    scan(u"1001"_s, 89.90, 2.0);
    scan(u"2001"_s, 450.00);
    static_cast<void>(told());
}

void CheckoutTill::openSaleWithCard(int number)
{
    openSale(number);
    EXPECT_TRUE(till().presentCard(u"9000000001"_s));
    static_cast<void>(told());
}

std::string CheckoutTill::money() const
{
    const till::ChequeContents& cheque = till().contents();
    QStringList lines;
    for (const QSharedPointer<GoodsItem>& line : cheque.liveLines()) {
        lines.append(::money(line->getSumb()));
    }
    till::Kopecks discount = 0;
    till::Kopecks points = 0;
    for (const QSharedPointer<DocumentImpact>& impact : cheque.impacts) {
        const till::Kopecks sum = till::kopecks(impact->getTotals()->getDiscountSum());
        (impact.dynamicCast<BonusImpact>() ? points : discount) += sum;
    }
    return u"%1 | discount %2, points %3, due %4"_s
        .arg(lines.join(u' '), ::money(till::roubles(discount)), ::money(till::roubles(points)), ::money(till().due()))
        .toStdString();
}

std::string CheckoutTill::states()
{
    QStringList entries;
    const QList<till::store::DocumentEntry> documents = till::store::documents();
    for (const till::store::DocumentEntry& entry : documents) {
        entries.append(QString::number(entry.number) + u' ' + stateName(entry.state));
    }
    return entries.join(u", "_s).toStdString();
}

std::string CheckoutTill::refusal(const std::function<void()>& call)
{
    try {
        call();
    } catch (const till::DeskError& error) {
        return error.text().toStdString();
    }
    return "(none)";
}

QStringList CheckoutTill::queued()
{
    QStringList bodies;
    const QList<till::store::QueueRecord> records = till::store::queueRecords();
    for (const till::store::QueueRecord& record : records) {
        bodies.append(QJsonDocument::fromJson(record.message).object()[u"body"_s].toString());
    }
    return bodies;
}

void CheckoutTill::failStoreAfter(int writes)
{
    run(u"UPDATE countdown SET writes = %1"_s.arg(writes));
}

void CheckoutTill::repairStore()
{
    failStoreAfter(plenty);
}

int CheckoutTill::writesMade(int allowed)
{
    return allowed - writesLeft();
}

QString discountOnCheque(int code, const QString& amount)
{
    return uR"(<Cheque><Discount DiscountID="%1" Amount="%2" Type="Amount" Percent="0"/></Cheque>)"_s.arg(
        QString::number(code), amount);
}

QString discountOnPosition(int position, int code, const QString& amount)
{
    return uR"(<ChequeLine ChequeLineNo="%1"><Discount DiscountID="%2" Amount="%3" Type="Amount" Percent="0"/></ChequeLine>)"_s
        .arg(QString::number(position), QString::number(code), amount);
}

QString spreadOf(const QMap<int, QString>& sums)
{
    QString lines;
    for (auto sum = sums.cbegin(); sum != sums.cend(); ++sum) {
        lines += uR"(<ChequeLine ChequeLineNo="%1" Amount="%2"/>)"_s.arg(QString::number(sum.key()), sum.value());
    }
    return u"<Cheque><ChequeLines>"_s + lines + u"</ChequeLines></Cheque>"_s;
}
