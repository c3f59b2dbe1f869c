#include "host/framework/activity_notifier.h"
#include "tests/restore/cheque_host.h"
#include "till/desk/open_document.h"
#include "till/document/card.h"
#include "till/document/cheque.h"
#include "till/document/coupon_record.h"
#include "till/document/payment.h"
#include "till/framework/action_dispatcher.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] QDateTime at(int minute, int second)
{
    return QDateTime(QDate(2024, 3, 5), QTime(14, minute, second));
}

[[nodiscard]] QString yes(bool value)
{
    return value ? u"yes"_s : u"no"_s;
}

[[nodiscard]] double inKopecks(double sum)
{
    return std::round(sum * 100.0) / 100.0;
}

[[nodiscard]] till::LineFields goods(int position, const QString& code, double price, double quantity)
{
    till::LineFields fields;
    fields.posnum = position;
    fields.code = code;
    fields.price = price;
    fields.quantity = quantity;
    return fields;
}

[[nodiscard]] Event about(EActivityListener::Event code, const QSharedPointer<AbstractDocument>& document)
{
    return Event(code).addArgument(u"document"_s, QVariant::fromValue(document));
}

} // namespace

/// Takes this system's discounts off the document, or its points.
void ChequeHost::takeOff(bool discounts)
{
    contents().impacts.removeIf([discounts](const QSharedPointer<DocumentImpact>& impact) {
        return discounts == !impact.dynamicCast<DiscountImpact>().isNull();
    });
}

/// What each line costs with the impacts that are on the document.
void ChequeHost::workOutLines()
{
    for (const QSharedPointer<GoodsItem>& item : contents().liveLines()) {
        till::LineFields& line = item.dynamicCast<till::Line>()->fields;
        double sum = line.price * line.quantity;
        for (const QSharedPointer<DocumentImpact>& impact : std::as_const(contents().impacts)) {
            if (const auto detail = impact->getDetails().value(line.posnum)) {
                sum -= detail->getDiscountSum();
            }
        }
        line.sum = inKopecks(sum);
    }
}

QString ChequeHost::addCoupon(const QString& number, int position)
{
    if (contents().liveLines().size() >= position) {
        contents().selectPosition(position);
        save();
    }
    control::Action action;
    action.appendArgument(number, u"couponNumber"_s);
    const bool added = Singleton<till::ActionDispatcher>::get()->carryOut(
        EContext::openDocument, control::addCoupon, action, [this, &number](const control::Action&) {
            contents().coupons.append(QSharedPointer<till::CouponRecord>::create(number));
            save();
            return true;
        });
    return yes(added);
}

QString ChequeHost::open()
{
    till::ChequeHead head;
    head.number = 1042;
    head.shift = 17;
    head.openTime = at(7, 9);
    document = QSharedPointer<till::Cheque>::create(head, identity);
    contents().addLine(goods(1, u"1042"_s, 89.90, 2.0));
    contents().addLine(goods(2, u"7"_s, 45.55, 0.75));
    contents().addLine(goods(3, u"8"_s, 30.00, 1.0));
    workOutLines();
    till::setOpenDocument(document);
    save();
    return u"yes"_s;
}

QString ChequeHost::presentCard()
{
    till::CardFields fields;
    fields.number = u"9000000001"_s;
    fields.codeInternal = 77;
    QSharedPointer<DocumentCardRecord> card = QSharedPointer<till::Card>::create(fields);
    const bool ours = plugin.identifyByCard(card, ECardNumberType());
    if (ours) {
        contents().setCard(plugin.getCardMode(), 1, card);
        save();
    }
    return yes(ours) + u", balance "_s + card->getBonusBalance().toString();
}

QString ChequeHost::request()
{
    // The service grants its discounts anew to a cheque without them.
    takeOff(true);
    workOutLines();
    save();
    keep(rolledBack, QVariant()); // gone from the disk as soon as the plug-in has stored what it knows
    const bool done = plugin.request(document);
    return yes(done) + u", messages "_s + plugin.getMessagesToCashier().join(u'|') + u'/'
        + plugin.getMessagesToClient().join(u'|');
}

QString ChequeHost::putDiscounts()
{
    const QList<QSharedPointer<DiscountImpact>> granted = plugin.getDiscountImpacts();
    for (const QSharedPointer<DiscountImpact>& impact : granted) {
        const QSharedPointer<DocumentImpactDetail> totals = impact->getTotals();
        const auto onDocument = QSharedPointer<DiscountImpact>::create(totals);
        onDocument->addDetailForPosition(totals->getPosition(), totals->getDiscountSum());
        contents().impacts.append(onDocument);
    }
    workOutLines();
    save();
    return QString::number(granted.size());
}

QString ChequeHost::removePosition()
{
    const QSharedPointer<GoodsItem> line = contents().remove(3);
    workOutLines();
    save();
    Singleton<ActivityNotifier>::get()->notify(
        about(EActivityListener::positionRemoved, document).addArgument(u"position"_s, QVariant::fromValue(line)));
    return u"yes"_s;
}

QString ChequeHost::offerPoints()
{
    const bool offered = plugin.hasPointsForSpend();
    return yes(offered) + u", "_s + plugin.pointsMessage();
}

QString ChequeHost::choosePoints()
{
    const double most = plugin.getPointsForSpend(document);
    const double chosen = std::min(most, 40.0); // the cashier's word
    plugin.setPointsForSpend(document, chosen);
    keep(chosenPoints, chosen);
    save();
    return u"%1 of %2"_s.arg(chosen).arg(most);
}

QString ChequeHost::spendPoints()
{
    keep(chosenPoints, QVariant()); // both go from the disk with the save of the plug-in
    keep(rolledBack, QVariant());
    const bool spent = plugin.spendPoints();
    return yes(spent) + u", left: "_s + plugin.pointsMessage();
}

QString ChequeHost::putPoints()
{
    takeOff(false);
    double sum = 0.0;
    for (const QSharedPointer<BonusImpact>& impact : plugin.getBonusImpactsForSpend()) {
        contents().impacts.append(impact);
        sum += impact->getTotals()->getDiscountSum();
    }
    contents().card(plugin.getCardMode())->setSpentSum(sum);
    workOutLines();
    save();
    return QString::number(sum, 'f', 2);
}

QString ChequeHost::rollBack()
{
    const bool done = plugin.rollback(document);
    keep(rolledBack, true);
    takeOff(false);
    workOutLines();
    save();
    return yes(done);
}

QString ChequeHost::setAside()
{
    plugin.beforePutoutCheck();
    contents().head.deferred = true;
    save();
    plugin.afterPutoutCheck();
    till::setOpenDocument(nullptr);
    document.reset();
    return u"yes"_s;
}

QString ChequeHost::reveal()
{
    document = storedDocument();
    contents().head.number = 2000;
    contents().head.shift = 18;
    till::setOpenDocument(document);
    plugin.revealCheck();
    contents().head.deferred = false;
    save();
    return contents().pluginDataJson;
}

QString ChequeHost::pay()
{
    constexpr double certificate = 20.0;
    contents().payments = {
        QSharedPointer<till::Payment>::create(till::PaymentFields { certificate, u"7000000007"_s, 3, 70 }),
        QSharedPointer<till::Payment>::create(
            till::PaymentFields { inKopecks(contents().sum() - certificate), QString(), 0, 1 }),
    };
    save();
    return u"yes"_s;
}

QString ChequeHost::commit()
{
    const bool done = plugin.commit(document);
    contents().head.closeTime = at(9, 30);
    save();
    return yes(done);
}

QString ChequeHost::tellClosed()
{
    contents().head.closeTime = at(9, 30);
    save();
    Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentClosed, document));
    return u"yes"_s;
}

QString ChequeHost::tellCancelled()
{
    contents().head.closeTime = at(9, 30);
    save();
    Singleton<ActivityNotifier>::get()->notify(about(EActivityListener::documentCancelled, document));
    return yes(plugin.cancel());
}

QString ChequeHost::end()
{
    plugin.clearAfterClose();
    keep(over, true);
    save();
    till::setOpenDocument(nullptr);
    document.reset();
    return u"yes"_s;
}
