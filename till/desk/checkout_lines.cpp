#include "till/desk/checkout.h"

#include "host/framework/activity_notifier.h"
#include "till/desk/desk_error.h"
#include "till/document/coupon_record.h"
#include "till/document/line.h"
#include "till/document/totals.h"
#include "till/framework/action_dispatcher.h"
#include "till/money/kopecks.h"
#include "till/store/document_states.h"

namespace till {

namespace {

    const QString couponNumberKey = QStringLiteral("couponNumber");

    [[nodiscard]] QSharedPointer<GoodsItem> lineOf(const ChequeContents& contents, int position)
    {
        for (const QSharedPointer<GoodsItem>& line : contents.liveLines()) {
            if (line->getPosnum() == position) {
                return line;
            }
        }
        throw DeskError(QStringLiteral("the cheque has no position %1").arg(position));
    }

    /// What was paid for a part of a line of a sale: the discount and the points on it go with it.
    void addSalePart(ChequeContents& back, const GoodsItem& sold, double quantity)
    {
        LineFields fields;
        fields.code = sold.getCode();
        fields.barcode = sold.getBcode();
        fields.price = sold.getPrice();
        fields.minPrice = sold.getMinPrice();
        fields.quantity = quantity;
        fields.bonusSpendAllowed = sold.isAllowBonusSpend();
        fields.bonusEarnAllowed = sold.isAllowBonusEarn();
        const auto line = back.addLine(fields);

        const Kopecks full = kopecks(sold.getPrice() * quantity);
        const Kopecks paid = kopecks(sold.getSumb() * quantity / sold.getQuantity());
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
    }

} // namespace

void Checkout::save() const
{
    store::saveAs(current, store::DocumentState::open);
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

void Checkout::scan(const Article& article)
{
    ChequeContents& cheque = contents();
    requireNoPoints();
    LineFields fields;
    fields.code = article.code;
    fields.barcode = article.barcode;
    fields.price = article.price;
    fields.minPrice = article.minPrice;
    fields.quantity = article.quantity;
    fields.discountAllowed = article.takesDiscounts;
    fields.bonusSpendAllowed = article.takesPoints;
    fields.bonusEarnAllowed = article.earnsPoints;
    cheque.addLine(fields);
    linesChanged();
}

void Checkout::takeBack(int position, double quantity)
{
    ChequeContents& back = contents();
    const QString saleIdentity = document()->getSourceDocumentId().toString();
    const QSharedPointer<AbstractDocument> sale
        = saleIdentity.isEmpty() ? nullptr : store::documentOf(saleIdentity);
    if (!sale) {
        throw DeskError(QStringLiteral("this is no return against a sale that the till knows"));
    }
    const QSharedPointer<GoodsItem> sold = lineOf(dynamic_cast<const ChequeContents&>(*sale), position);
    if (quantity <= 0.0 || quantity > sold->getQuantity()) {
        throw DeskError(QStringLiteral("of position %1 the sale has %2, not %3")
                            .arg(QString::number(position), QString::number(sold->getQuantity()),
                                 QString::number(quantity)));
    }
    addSalePart(back, *sold, quantity);
    linesChanged();
}

void Checkout::remove(int position)
{
    ChequeContents& cheque = contents();
    requireNoPoints();
    const QSharedPointer<GoodsItem> line = lineOf(cheque, position);
    cheque.remove(position);
    workOutLines(cheque);
    Singleton<ActivityNotifier>::get()->notify(
        Event(EActivityListener::positionRemoved)
            .addArgument(QStringLiteral("position"), QVariant::fromValue(line))
            .addArgument(QStringLiteral("document"), QVariant::fromValue(current)));
    linesChanged();
}

void Checkout::selectPosition(int position)
{
    static_cast<void>(lineOf(contents(), position));
    contents().selectPosition(position);
    save();
}

bool Checkout::addCoupon(const QString& number)
{
    ChequeContents& cheque = contents();
    requireNoPoints();
    bool added = false;
    control::Action action;
    action.appendArgument(number, couponNumberKey);
    Singleton<ActionDispatcher>::get()->carryOut(
        EContext::openDocument, control::addCoupon, action, [&](const control::Action& taken) {
            // This till has no coupons of its own: it takes those that a loyalty system has accepted.
            const auto type = static_cast<ECoupon::Type>(taken.value(QStringLiteral("couponType"), QVariant()).toInt());
            if (!system.couponBelongsToSystem(type)) {
                return false;
            }
            cheque.coupons.append(QSharedPointer<CouponRecord>::create(number));
            added = true;
            return true;
        });
    linesChanged();
    return added;
}

bool Checkout::deleteCoupon(const QString& number)
{
    ChequeContents& cheque = contents();
    requireNoPoints();
    for (const CouponPtr& coupon : std::as_const(cheque.coupons)) {
        if (coupon->getNumber() == number) {
            control::Action action;
            action.appendArgument(QVariant::fromValue(coupon), QStringLiteral("coupon"));
            const bool done = Singleton<ActionDispatcher>::get()->carryOut(
                EContext::openDocument, control::deleteCoupon, action, [&](const control::Action&) {
                    // The plug-in forgets all coupons of the number, so all of them go.
                    cheque.coupons.removeIf([&](const CouponPtr& one) { return one->getNumber() == number; });
                    return true;
                });
            linesChanged();
            return done;
        }
    }
    throw DeskError(QStringLiteral("the cheque has no coupon %1").arg(number));
}

} // namespace till
