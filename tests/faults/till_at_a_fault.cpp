#include "tests/faults/till_at_a_fault.h"

#include "host/framework/activity_notifier.h"
#include "host/framework/documents_dao.h"
#include "tests/support/document_builder.h"
#include "till/delivery/delivery.h"
#include "till/desk/cashier.h"
#include "till/desk/open_document.h"
#include "till/document/card.h"
#include "till/framework/action_dispatcher.h"
#include "till/store/queue_records.h"

#include <QJsonDocument>
#include <QMap>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace faults {

namespace {

const QString cardNumber = u"9000000001"_s;

[[nodiscard]] DocumentBuilder sale()
{
    return DocumentBuilder().line(Goods(1, u"1042"_s, 89.90, 2.0));
}

[[nodiscard]] Event about(EActivityListener::Event code, const QSharedPointer<AbstractDocument>& document)
{
    return Event(code).addArgument(u"document"_s, QVariant::fromValue(document));
}

[[nodiscard]] QSharedPointer<DocumentCardRecord> aCard()
{
    till::CardFields fields;
    fields.number = cardNumber;
    return QSharedPointer<till::Card>::create(fields);
}

[[nodiscard]] QString yes(bool value)
{
    return value ? u"yes"_s : u"no"_s;
}

}

/// The plug-in with what it keeps of the points opened to view.
class TillAtAFault::OpenVantiro : public Vantiro {
public:
    using Vantiro::bonusImpacts;
};

/// The texts of coupons that the plug-in refuses.
class TillAtAFault::RefusedCoupons : public BaseActivityListener {
public:
    RefusedCoupons()
        : BaseActivityListener(nullptr)
    {
        Singleton<ActivityNotifier>::get()->subscribe(this);
    }

    void handleEvent(const Event& event) override
    {
        if (event.getCode() == EActivityListener::couponRefused) {
            text = event.value(u"text"_s, QVariant()).value<tr::Tr>().ru();
        }
    }

    QString text;
};

template <class Call>
auto TillAtAFault::timed(Call call)
{
    const auto start = std::chrono::steady_clock::now();
    auto result = call();
    wait = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    return result;
}

TillAtAFault::TillAtAFault(const QStringList& addresses, int secondsForADelivery)
    : servers(addresses)
    , timeout(secondsForADelivery)
    , plugin(QSharedPointer<OpenVantiro>::create())
{
    till::setCashier({ [this](const QString& text) { shown.append(text); }, [](const QString&) { return u"1234"_s; },
                       [this](const QString&) { ++slips; } });
    if (!plugin->init()) {
        throw std::runtime_error("the plug-in is not taken");
    }
}

TillAtAFault::~TillAtAFault()
{
    till::setOpenDocument(nullptr);
}

QByteArray TillAtAFault::actionOf(const QString& operation)
{
    static const QMap<QString, QByteArray> actions {
        { u"IsCardValid"_s, "IsCardValid" },
        { u"GetCardBalance"_s, "GetCardBalance" },
        { u"GetCardBalanceOfAKnownCard"_s, "GetCardBalance" },
        { u"GetDiscounts"_s, "GetDiscounts" },
        { u"GetMessages"_s, "GetMessages" },
        { u"GetCardDiscountAmount"_s, "GetCardDiscountAmount" },
        { u"GetCardDiscountAmountForAnOffer"_s, "GetCardDiscountAmount" },
        { u"SubtractBonus45"_s, "SubtractBonus45" },
        { u"CancelSubtractBonus"_s, "CancelSubtractBonus" },
        { u"Accrual"_s, "Accrual" },
        { u"AccrualOfAReturn"_s, "Accrual" },
        { u"AccrualWithoutACard"_s, "Accrual" },
        { u"AccrualOfACancelledCheque"_s, "Accrual" },
        { u"GetVerifyCode"_s, "GetVerifyCode" },
        { u"IsCouponValid"_s, "IsCouponValid" },
        { u"Ping"_s, "Ping" },
        { u"OfflineAccrual"_s, "OfflineAccrual" },
    };
    return actions.value(operation);
}

QStringList TillAtAFault::operations()
{
    return { u"IsCardValid"_s,
             u"GetCardBalance"_s,
             u"GetCardBalanceOfAKnownCard"_s,
             u"GetDiscounts"_s,
             u"GetMessages"_s,
             u"GetCardDiscountAmount"_s,
             u"GetCardDiscountAmountForAnOffer"_s,
             u"SubtractBonus45"_s,
             u"CancelSubtractBonus"_s,
             u"Accrual"_s,
             u"AccrualOfAReturn"_s,
             u"AccrualWithoutACard"_s,
             u"AccrualOfACancelledCheque"_s,
             u"GetVerifyCode"_s,
             u"IsCouponValid"_s,
             u"Ping"_s,
             u"OfflineAccrual"_s };
}

TillAtAFault::Outcome TillAtAFault::perform(const QString& operation)
{
    const QMap<QString, std::function<QString()>> steps {
        { u"IsCardValid"_s, [this] { return presentCard(); } },
        { u"GetCardBalance"_s, [this] { return presentCard(); } },
        { u"GetCardBalanceOfAKnownCard"_s, [this] { return refreshCard(); } },
        { u"GetDiscounts"_s, [this] { return request(); } },
        { u"GetMessages"_s, [this] { return request(); } },
        { u"GetCardDiscountAmount"_s, [this] { return request(); } },
        { u"GetCardDiscountAmountForAnOffer"_s, [this] { return offerPoints(); } },
        { u"SubtractBonus45"_s, [this] { return spendPoints(); } },
        { u"CancelSubtractBonus"_s, [this] { return rollBack(); } },
        { u"Accrual"_s, [this] { return commit(EDocumentType::sale); } },
        { u"AccrualOfAReturn"_s, [this] { return commit(EDocumentType::goodsReturn); } },
        { u"AccrualWithoutACard"_s, [this] { return tellClosed(); } },
        { u"AccrualOfACancelledCheque"_s, [this] { return tellCancelled(); } },
        { u"GetVerifyCode"_s, [this] { return findCardByPhone(); } },
        { u"IsCouponValid"_s, [this] { return addCoupon(); } },
        { u"Ping"_s, [this] { return ping(); } },
        { u"OfflineAccrual"_s, [this] { return deliver(); } },
    };
    Outcome outcome;
    outcome.text = steps.value(operation)();
    outcome.wait = wait;
    for (const till::store::QueueRecord& record : till::store::queueRecords()) {
        till::store::removeDelivered(record.id);
    }
    outcome.server = serverInUse();
    return outcome;
}

void TillAtAFault::open(const QSharedPointer<AbstractDocument>& opened)
{
    document = opened;
    till::setOpenDocument(document);
}

QString TillAtAFault::told(bool done) const
{
    QStringList parts { yes(done) };
    if (const QString error = plugin->getLastErrorString().ru(); !error.isEmpty()) {
        parts.append(error);
    }
    if (!shown.isEmpty()) {
        parts.append(u"shown: "_s + shown.join(u' '));
    }
    return parts.join(u" | "_s) + state();
}

/// Whether the document is offline, what is queued, and what has been printed. A flag that is not on disk is as good as
/// none.
QString TillAtAFault::state() const
{
    QStringList parts { QString() };
    const bool offline = plugin->isOfflineMode(document);
    const auto stored = Singleton<DocumentsDao>::get()->getDocument(document->getDocumentIdentity(), 0);
    if (offline && (stored.isNull() || !plugin->isOfflineMode(stored))) {
        parts.append(u"offline, but not on disk"_s);
    } else {
        parts.append(offline ? u"offline"_s : u"online"_s);
    }
    parts.append(queued());
    if (slips > 0) {
        parts.append(slips == 1 ? u"slip"_s : u"%1 slips"_s.arg(slips));
    }
    return parts.join(u" | "_s);
}

QString TillAtAFault::queued() const
{
    QStringList messages;
    for (const till::store::QueueRecord& record : till::store::queueRecords()) {
        const QJsonObject message = QJsonDocument::fromJson(record.message).object();
        messages.append(u"%1 for server %2"_s.arg(message[u"request"_s].toString())
                            .arg(servers.indexOf(message[u"url"_s].toString())));
    }
    return messages.isEmpty() ? u"nothing queued"_s : messages.join(u", "_s);
}

/// A message for the queue names the server in use, and no server is asked for it.
int TillAtAFault::serverInUse()
{
    const QSharedPointer<AbstractDocument> other = sale().card(cardNumber).identity(u"other"_s).closed().build();
    other->setValue(u"Vantiro"_s, u"offlineMode"_s, true);
    open(other);
    if (!plugin->commit(other)) {
        throw std::runtime_error("the probe has failed");
    }
    const till::store::QueueRecord record = till::store::queueRecords().constLast();
    till::store::removeDelivered(record.id);
    const QString url = QJsonDocument::fromJson(record.message).object()[u"url"_s].toString();
    return static_cast<int>(servers.indexOf(url));
}

QString TillAtAFault::presentCard()
{
    open(sale().build());
    QSharedPointer<DocumentCardRecord> card = aCard();
    const bool done = timed([&] { return plugin->identifyByCard(card, ECardNumberType()); });
    return told(done) + u" | balance %1"_s.arg(card->getBonusBalance().toDouble());
}

QString TillAtAFault::refreshCard()
{
    open(sale().build());
    QSharedPointer<DocumentCardRecord> card = aCard();
    const bool done = timed([&] { return plugin->getCardInfo(card, ECardNumberType()); });
    return told(done) + u" | balance %1"_s.arg(card->getBonusBalance().toDouble());
}

QString TillAtAFault::request()
{
    open(sale().card(cardNumber).build());
    return told(timed([&] { return plugin->request(document); }));
}

QString TillAtAFault::offerPoints()
{
    open(sale().card(cardNumber).build());
    return told(timed([&] { return plugin->hasPointsForSpend(); }));
}

QString TillAtAFault::spendPoints()
{
    open(sale().card(cardNumber).build());
    plugin->setPointsForSpend(document, 40.0);
    const bool done = timed([&] { return plugin->spendPoints(); });
    return told(done) + u" | spendings %1"_s.arg(plugin->bonusImpacts.size());
}

QString TillAtAFault::rollBack()
{
    open(sale().card(cardNumber).build());
    plugin->bonusImpacts.append(bonusImpact({ { 1, 40.0 } }));
    const bool done = timed([&] { return plugin->rollback(document); });
    return told(done) + u" | spendings %1"_s.arg(plugin->bonusImpacts.size());
}

QString TillAtAFault::commit(int type)
{
    open(sale().type(type).card(cardNumber).cash(179.80).closed().build());
    return told(timed([&] { return plugin->commit(document); }));
}

QString TillAtAFault::tellClosed()
{
    open(sale().cash(179.80).closed().build());
    timed([&] {
        Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentClosed, document));
        return true;
    });
    return told(true);
}

QString TillAtAFault::tellCancelled()
{
    open(sale().card(cardNumber).build());
    timed([&] {
        Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentCancelled, document));
        return true;
    });
    return told(true);
}

QString TillAtAFault::findCardByPhone()
{
    open(sale().build());
    loyalty::CardNumberInputData input;
    input.type = loyalty::CardNumberInputData::phone;
    input.value = u"+79990000001"_s;
    const CardNumberResult result = timed([&] { return plugin->getCardNumber(input); });
    const QString error = result.error.ru();
    return yes(result.ok) + (error.isEmpty() ? QString() : u" | "_s + error) + state()
        + (result.cardNumber.isEmpty() ? QString() : u" | card "_s + result.cardNumber);
}

QString TillAtAFault::addCoupon()
{
    const QSharedPointer<till::Cheque> cheque = sale().card(cardNumber).build();
    cheque->selectPosition(1);
    open(cheque);
    const RefusedCoupons refused;
    control::Action action;
    action.appendArgument(u"vantiro-10"_s, u"couponNumber"_s);
    bool ours = false;
    const bool done = timed([&] {
        return Singleton<till::ActionDispatcher>::get()->carryOut(
            EContext::openDocument, control::addCoupon, action, [&ours](const control::Action& taken) {
                ours = taken.value(u"couponType"_s, QVariant()).toInt() == ECoupon::loyaltySystem;
                return true;
            });
    });
    return yes(done) + (refused.text.isEmpty() ? QString() : u" | "_s + refused.text) + state()
        + (ours ? u" | coupon taken"_s : QString());
}

QString TillAtAFault::ping()
{
    open(sale().build());
    control::Action action;
    action.appendArgument(u"Vantiro"_s, u"pluginName"_s);
    const bool done = Singleton<till::ActionDispatcher>::get()->carryOut(
        EContext::any, control::checkConnection, action, [](const control::Action&) { return true; });
    const auto task = action.value(u"pingTask"_s, QVariant()).value<QSharedPointer<BasicTask>>();
    if (!done || task.isNull()) {
        return u"no task"_s;
    }
    const QSharedPointer<TaskResult> result = timed([&] { return task->run(); });
    return result->toString() + u" | server %1"_s.arg(result->data.value(u"serverIndex"_s).toInt());
}

QString TillAtAFault::deliver()
{
    const QSharedPointer<AbstractDocument> offline = sale().card(cardNumber).cash(179.80).closed().build();
    offline->setValue(u"Vantiro"_s, u"offlineMode"_s, true);
    open(offline);
    if (!plugin->commit(document)) {
        return u"not queued"_s;
    }
    till::Delivery::Settings settings;
    settings.timeout = timeout;
    for (const QString& server : std::as_const(servers)) {
        settings.servers.append(QUrl(server));
    }
    till::Delivery delivery(settings);
    const till::Delivery::Outcome outcome = timed([&] { return delivery.run(true); });
    QString text = u"delivered %1 | stepped aside %2"_s.arg(outcome.delivered).arg(outcome.steppedAside);
    for (const till::store::QueueRecord& record : till::store::queueRecords()) {
        const bool pending = record.state == till::store::RecordState::pending;
        text += u" | %1, wrong answers %2"_s.arg(pending ? u"pending"_s : u"kept aside"_s).arg(record.attempts);
    }
    return text;
}

}
