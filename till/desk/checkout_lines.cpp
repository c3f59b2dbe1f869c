#include "till/desk/checkout.h"

#include "host/facilities/exceptions.h"
#include "host/framework/activity_notifier.h"
#include "till/desk/cashier.h"
#include "till/desk/desk_error.h"
#include "till/document/coupon_record.h"
#include "till/document/line.h"
#include "till/document/plugin_values.h"
#include "till/document/totals.h"
#include "till/framework/action_dispatcher.h"
#include "till/money/kopecks.h"
#include "till/store/document_states.h"

#include <algorithm>
#include <cmath>

namespace till {

namespace {

    const QString couponNumberKey = QStringLiteral("couponNumber");
    const QString tillGroup = QStringLiteral("Till");

    [[nodiscard]] QSharedPointer<GoodsItem> lineOf(const ChequeContents& contents, int position)
    {
        for (const QSharedPointer<GoodsItem>& line : contents.liveLines()) {
            if (line->getPosnum() == position) {
                return line;
            }
        }
        throw DeskError(QStringLiteral("the cheque has no position %1").arg(position));
    }

    [[nodiscard]] qint64 thousandths(double quantity)
    {
        return std::llround(quantity * 1000.0);
    }

    /// A line of a return keeps the position of the sale's line beside it.
    [[nodiscard]] QString soldKey(const GoodsItem& line)
    {
        return QStringLiteral("sold/%1").arg(line.getPosnum());
    }

    /// What returns have taken back of a line of a sale.
    struct Taken {
        qint64 quantity = 0; // thousandths
        Kopecks paid = 0;
    };

    void addTaken(Taken& taken, AbstractDocument& back, int position)
    {
        for (const QSharedPointer<GoodsItem>& line : back.getGoodsItems()) {
            if (back.getValue(tillGroup, soldKey(*line), 0).toInt() == position) {
                taken.quantity += thousandths(line->getQuantity());
                taken.paid += kopecks(line->getSumb());
            }
        }
    }

    /// By this return and by those that are closed.
    [[nodiscard]] Taken takenOf(AbstractDocument& current, int position)
    {
        Taken taken;
        addTaken(taken, current, position);
        for (const store::DocumentEntry& entry : store::documents()) {
            if (entry.type != EDocumentType::returnBySale || entry.state != store::DocumentState::closed) {
                continue;
            }
            const QSharedPointer<AbstractDocument> former = store::documentOf(entry.identity);
            if (former->getSourceDocumentId() == current.getSourceDocumentId()) {
                addTaken(taken, *former, position);
            }
        }
        return taken;
    }

    /// What is to be given back for so much more of the line: the rounding of one return is made good by the next.
    [[nodiscard]] Kopecks shareOf(const GoodsItem& sold, const Taken& taken, double quantity)
    {
        const double part = static_cast<double>(taken.quantity + thousandths(quantity)) / 1000.0 / sold.getQuantity();
        return std::clamp<Kopecks>(std::llround(static_cast<double>(kopecks(sold.getSumb())) * part) - taken.paid, 0,
                                   cost(sold.getPrice(), quantity));
    }

    /// The discount and the points on the line of the sale go with what was paid for it.
    QSharedPointer<Line> addSalePart(ChequeContents& back, const GoodsItem& sold, double quantity, Kopecks paid)
    {
        LineFields fields;
        fields.code = sold.getCode();
        fields.barcode = sold.getBcode();
        fields.price = sold.getPrice();
        fields.minPrice = sold.getMinPrice();
        fields.quantity = quantity;
        fields.bonusSpendAllowed = sold.isAllowBonusSpend();
        fields.bonusEarnAllowed = sold.isAllowBonusEarn();
        fields.discountAllowed = sold.isAllowDiscount();
        fields.onlyExternalDiscountAllowed = sold.isAllowOnlyExternalDiscount();
        const auto line = back.addLine(fields);

        const Kopecks full = cost(sold.getPrice(), quantity);
        if (paid < full) {
            const auto totals = QSharedPointer<DocumentImpactDetail>::create();
            totals->setDiscountName(QStringLiteral("Скидка чека продажи"));
            totals->setDiscountObject(EDiscountObject::position);
            totals->setDiscountType(EDiscountType::sum);
            totals->setImpactSource(EImpactSource::host);
            totals->setPosition(line->getPosnum());
            totals->setDiscountSum(roubles(full - paid));
            const auto impact = QSharedPointer<DiscountImpact>::create(totals);
            impact->addDetailForPosition(line->getPosnum(), roubles(full - paid));
            back.impacts.append(impact);
        }
        return line;
    }

} // namespace

void Checkout::save()
{
    store::saveAs(current, store::DocumentState::open);
    unsaved.clear();
}

/// What the service may have been told of as closed or cancelled is not changed any more.
void Checkout::requireGoingOn() const
{
    const int number = document()->getChequeNumber();
    if (unsaved.startsWith(revealStep)) {
        throw DeskError(QStringLiteral("cheque %1 is being brought back: reveal it again").arg(number));
    }
    if (givenUp) {
        throw DeskError(QStringLiteral("cheque %1 is being cancelled: cancel it again").arg(number));
    }
    if (contents().head.closeTime.isValid()) {
        throw DeskError(QStringLiteral("cheque %1 is being closed: close it again").arg(number));
    }
}

void Checkout::requireNoPayments() const
{
    if (!contents().payments.isEmpty()) {
        throw DeskError(QStringLiteral("a payment stands on this cheque: its sum must not go down any more"));
    }
}

void Checkout::requireSale() const
{
    if (document()->getDocumentType() != EDocumentType::sale) {
        throw DeskError(QStringLiteral("this is done on a sale only"));
    }
}

void Checkout::requireLines() const
{
    if (document()->getPositionCount() < 1) {
        throw DeskError(QStringLiteral("the cheque has no lines"));
    }
}

void Checkout::requireNoPoints() const
{
    if (system.hasBonusImpacts()) {
        throw DeskError(QStringLiteral("points are spent on this cheque: roll them back first"));
    }
}

void Checkout::linesChanged()
{
    workOutLines(contents());
    changed = true;
    save();
}

void Checkout::saveAdded(const Position& former)
{
    const bool wasChanged = changed;
    try {
        linesChanged();
    } catch (const BasicException&) {
        contents().withdrawLine(); // it will be added again, and must not be paid for twice
        if (former.state == Position::present) {
            contents().selectPosition(former.number);
        }
        workOutLines(contents());
        changed = wasChanged;
        throw;
    }
}

void Checkout::scan(const Article& article)
{
    ChequeContents& cheque = contents();
    requireGoingOn();
    requireNoPoints();
    if (thousandths(article.quantity) <= 0 || kopecks(article.price) < 0) {
        throw DeskError(QStringLiteral("a line needs a quantity above zero and a price that is not below it"));
    }
    LineFields fields;
    fields.code = article.code;
    fields.barcode = article.barcode;
    fields.price = article.price;
    fields.minPrice = article.minPrice;
    fields.quantity = article.quantity;
    fields.discountAllowed = article.takesDiscounts;
    fields.bonusSpendAllowed = article.takesPoints;
    fields.bonusEarnAllowed = article.earnsPoints;
    const Position former = cheque.currentPosition();
    cheque.addLine(fields);
    saveAdded(former);
}

void Checkout::takeBack(int position, double quantity)
{
    ChequeContents& back = contents();
    requireGoingOn();
    const QString saleIdentity = document()->getSourceDocumentId().toString();
    const QSharedPointer<AbstractDocument> sale
        = saleIdentity.isEmpty() ? nullptr : store::documentOf(saleIdentity);
    if (!sale) {
        throw DeskError(QStringLiteral("this is no return against a sale that the till knows"));
    }
    const QSharedPointer<GoodsItem> sold = lineOf(dynamic_cast<const ChequeContents&>(*sale), position);
    const Taken taken = takenOf(*current, position);
    const qint64 left = thousandths(sold->getQuantity()) - taken.quantity;
    if (thousandths(quantity) <= 0 || thousandths(quantity) > left) {
        throw DeskError(QStringLiteral("of position %1 the sale has %2 left, not %3")
                            .arg(QString::number(position), QString::number(static_cast<double>(left) / 1000.0),
                                 QString::number(quantity)));
    }
    const Position former = back.currentPosition();
    const QList<QSharedPointer<DocumentImpact>> impacts = back.impacts;
    const auto line = addSalePart(back, *sold, quantity, shareOf(*sold, taken, quantity));
    current->setValue(tillGroup, soldKey(*line), position);
    try {
        saveAdded(former);
    } catch (const BasicException&) {
        back.impacts = impacts;
        pluginValuesOf(*current)[tillGroup].remove(soldKey(*line));
        throw;
    }
}

void Checkout::remove(int position)
{
    ChequeContents& cheque = contents();
    requireGoingOn();
    requireNoPoints();
    requireNoPayments();
    const QString step = QStringLiteral("remove %1").arg(position);
    QSharedPointer<GoodsItem> line;
    if (unsaved == step) {
        line = cheque.deletedLines().constLast(); // the loyalty system may not have come to the end of it
    } else {
        line = lineOf(cheque, position);
        cheque.remove(position);
        dropDiscountsOn(cheque, position);
        unsaved = step;
    }
    Singleton<ActivityNotifier>::get()->notify(
        Event(EActivityListener::positionRemoved)
            .addArgument(QStringLiteral("position"), QVariant::fromValue(line))
            .addArgument(QStringLiteral("document"), QVariant::fromValue(current)));
    linesChanged();
}

void Checkout::selectPosition(int position)
{
    requireGoingOn();
    static_cast<void>(lineOf(contents(), position));
    contents().selectPosition(position);
    save();
}

bool Checkout::addCoupon(const QString& number)
{
    ChequeContents& cheque = contents();
    requireGoingOn();
    requireNoPoints();
    const QString step = QStringLiteral("coupon ") + number;
    if (unsaved == step) {
        linesChanged();
        return true;
    }
    bool added = false;
    control::Action action;
    action.appendArgument(number, couponNumberKey);
    Singleton<ActionDispatcher>::get()->carryOut(
        EContext::openDocument, control::addCoupon, action, [&](const control::Action& taken) {
            // This till has no coupons of its own: it takes those that a loyalty system has accepted.
            const auto type = static_cast<ECoupon::Type>(taken.value(QStringLiteral("couponType"), QVariant()).toInt());
            if (!system.couponBelongsToSystem(type)) {
                cashier().show(QStringLiteral("Купон %1 не принят").arg(number));
                return false;
            }
            cheque.coupons.append(QSharedPointer<CouponRecord>::create(number));
            added = true;
            unsaved = step;
            return true;
        });
    linesChanged();
    return added;
}

bool Checkout::deleteCoupon(const QString& number)
{
    ChequeContents& cheque = contents();
    requireGoingOn();
    requireNoPoints();
    const QString step = QStringLiteral("delete coupon ") + number;
    if (unsaved == step) {
        linesChanged();
        return true;
    }
    for (const CouponPtr& coupon : std::as_const(cheque.coupons)) {
        if (coupon->getNumber() == number) {
            control::Action action;
            action.appendArgument(QVariant::fromValue(coupon), QStringLiteral("coupon"));
            const bool done = Singleton<ActionDispatcher>::get()->carryOut(
                EContext::openDocument, control::deleteCoupon, action, [&](const control::Action&) {
                    // The plug-in forgets all coupons of the number, so all of them go.
                    cheque.coupons.removeIf([&](const CouponPtr& one) { return one->getNumber() == number; });
                    unsaved = step;
                    return true;
                });
            linesChanged();
            return done;
        }
    }
    throw DeskError(QStringLiteral("the cheque has no coupon %1").arg(number));
}

} // namespace till
