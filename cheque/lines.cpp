#include "client/vantiro_interface.h"

#include "bonus/records.h"
#include "cheque/elements.h"
#include "cheque/names.h"
#include "client/forms.h"
#include "client/xml_text.h"

#include <algorithm>
#include <cmath>

using namespace vantiro;

namespace {

/// What three sources say of the positions: the records on the document, the points spent, the discounts just granted.
struct Reconciliation {
    QMap<int, double> deductions; // what comes off the line's sum: down by points spent, up by granted discounts
    QMap<int, QList<QSharedPointer<DocumentImpactDetail>>> details; // in the order found
    QMap<int, double> bonus;
};

[[nodiscard]] Reconciliation reconcile(const QSharedPointer<AbstractDocument>& document,
                                       const QList<QSharedPointer<DiscountImpact>>& discountImpacts)
{
    Reconciliation result;
    for (const QSharedPointer<DocumentImpact>& impact : document->getDocumentImpacts()) {
        for (const QSharedPointer<DocumentImpactDetail>& detail : impact->getDetails()) {
            if (!detail) {
                continue; // says nothing of its line, and must not cost the till its life
            }
            const int position = detail->getPosition();
            if (detail->getDiscountName() == records::bonusName) {
                // Assigned and not added: `BonusDiscount` shows the last record, while the sum takes all of them back.
                result.bonus[position] = detail->getDiscountSum();
                result.deductions[position] -= detail->getDiscountSum();
            } else {
                result.details[position].append(detail);
            }
        }
    }
    for (const QSharedPointer<DiscountImpact>& impact : discountImpacts) {
        if (!impact) {
            continue; // restored from a record that was none
        }
        const QSharedPointer<DocumentImpactDetail> totals = impact->getTotals();
        if (totals->getDiscountObject() != EDiscountObject::position) {
            continue; // a discount on the whole cheque acts on the cheque's amount alone
        }
        QList<QSharedPointer<DocumentImpactDetail>>& details = result.details[totals->getPosition()];
        const bool carried = std::any_of(details.cbegin(), details.cend(), [&totals](const auto& detail) {
            return detail->getDiscountCode() == totals->getDiscountCode();
        });
        if (!carried) { // the document may carry the discount by now, and then it must not count twice
            result.deductions[totals->getPosition()] += totals->getDiscountSum();
            details.append(totals);
        }
    }
    return result;
}

[[nodiscard]] QString discountType(const DocumentImpactDetail& detail)
{
    if (detail.getDiscountType() == EDiscountType::percent) {
        return QStringLiteral("Percent");
    }
    if (detail.getDiscountType() == EDiscountType::fixedPrice) {
        return QStringLiteral("FixPrice");
    }
    if (detail.getDiscountMode() == EDiscountMode::tender) {
        return QStringLiteral("Tender");
    }
    return xml::amount;
}

/// In the form that Qt gives a double, which costs it more than all the rest of the element; a whole number has but
/// one.
void setPercent(QDomElement& discount, double percent)
{
    const QString name = QStringLiteral("Percent");
    constexpr double most = 1000.0;
    const auto whole = percent >= 0.0 && percent < most ? static_cast<int>(percent) : -1;
    if (static_cast<double>(whole) == percent) {
        discount.setAttribute(name, whole);
    } else {
        discount.setAttribute(name, percent);
    }
}

[[nodiscard]] bool isDiscountedByHost(const QSharedPointer<DocumentImpactDetail>& detail)
{
    return detail->getImpactSource() == EImpactSource::host;
}

} // namespace

void VantiroInterface::addChequeLinesTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque,
                                         const QList<QSharedPointer<DiscountImpact>>& discountImpacts,
                                         const QMap<int, QList<QString>>& positionCoupons) const
{
    const Reconciliation reconciled = reconcile(document, discountImpacts);
    QDomElement chequeLines = xml::makeElement(cheque, xml::chequeLinesTag);
    for (const QSharedPointer<GoodsItem>& item : document->getGoodsItems()) {
        const int position = item->getPosnum();
        addChequeLineTag(item, chequeLines, reconciled.deductions.value(position), reconciled.details.value(position),
                         reconciled.bonus.value(position), positionCoupons.value(position));
    }
    cheque.appendChild(chequeLines);
}

void VantiroInterface::addChequeLinesTag(const QSharedPointer<AbstractDocument>& document, QDomElement& cheque,
                                         const QMap<int, QList<QString>>& positionCoupons) const
{
    QDomElement chequeLines = xml::makeElement(cheque, xml::chequeLinesTag);
    for (const QSharedPointer<GoodsItem>& item : document->getDeletedGoodsItems()) {
        addChequeLineTag(item, chequeLines, 0.0, {}, 0.0, positionCoupons.value(item->getPosnum()));
    }
    cheque.appendChild(chequeLines);
}

void VantiroInterface::addChequeLineTag(const QSharedPointer<GoodsItem>& item, QDomElement& chequeLines,
                                        double deduction,
                                        const QList<QSharedPointer<DocumentImpactDetail>>& details, double bonus,
                                        const QList<QString>& coupons) const
{
    bool noAddBonus = !item->isAllowBonusEarn();
    bool noPayBonus = !item->isAllowBonusSpend();
    if (std::abs(item->getPrice() - item->getMinPrice()) < 0.005) {
        // At the minimum price the option alone decides; what the goods allow is not asked, on purpose.
        noAddBonus = (noBonusForMinprice & 1) != 0;
        noPayBonus = (noBonusForMinprice & 2) != 0;
    }

    const double amount = item->getSumb() - deduction;
    double minAmount = item->getMinPrice() * item->getQuantity();
    if (forbidDiscountForDiscountedPosition
        && std::any_of(details.cbegin(), details.cend(), isDiscountedByHost)) {
        minAmount = amount; // no room for a further discount
    }

    QDomElement line = xml::makeElement(chequeLines, xml::chequeLineTag);
    line.setAttribute(xml::chequeLineNo, QString::number(item->getPosnum()));
    line.setAttribute(QStringLiteral("NoPayBonus"), forms::boolean(noPayBonus));
    line.setAttribute(QStringLiteral("NoAddBonus"), forms::boolean(noAddBonus));
    line.setAttribute(QStringLiteral("NoDiscounts"),
                      forms::boolean(!item->isAllowDiscount() && !item->isAllowOnlyExternalDiscount()));
    line.setAttribute(QStringLiteral("Price"), forms::money(item->getPrice()));
    line.setAttribute(QStringLiteral("Quantity"), forms::quantity(item->getQuantity()));
    line.setAttribute(xml::amount, forms::money(amount));
    line.setAttribute(QStringLiteral("MinAmount"), forms::money(minAmount));
    line.setAttribute(QStringLiteral("MinPrice"), forms::money(item->getMinPrice()));
    line.setAttribute(QStringLiteral("MaxDiscount"), QStringLiteral("100.0"));
    line.setAttribute(xml::bonusDiscount, forms::money(bonus));

    QDomElement goods = xml::appendElement(line, xml::itemTag);
    goods.setAttribute(QStringLiteral("ItemID"), xmlText(item->getCode()));
    goods.setAttribute(QStringLiteral("Barcode"), xmlText(item->getBcode()));
    addDiscountsTag(details, line);
    addCouponsTags(coupons, line);
    chequeLines.appendChild(line);
}

void VantiroInterface::addDiscountsTag(const QList<QSharedPointer<DocumentImpactDetail>>& details,
                                       QDomElement& chequeLine) const
{
    QDomElement discounts = xml::appendElement(chequeLine, xml::discountsTag);
    for (const QSharedPointer<DocumentImpactDetail>& detail : details) {
        // The server knows the codes that it gave itself; every other record goes out without one.
        const bool ours = detail->getDiscountName() == records::positionDiscountName;
        const bool percent = detail->getDiscountType() == EDiscountType::percent;

        QDomElement discount = xml::appendElement(discounts, QStringLiteral("Discount"));
        discount.setAttribute(QStringLiteral("DiscountID"),
                              QString::number(ours ? detail->getDiscountCode() : 0));
        discount.setAttribute(xml::type, discountType(*detail));
        setPercent(discount, percent ? detail->getDiscountRate().toDouble() : 0.0);
        discount.setAttribute(xml::amount, forms::money(detail->getDiscountSum()));
    }
}
