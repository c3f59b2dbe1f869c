#include "till/document/totals.h"

#include "till/document/line.h"
#include "till/money/spread.h"

#include <QMap>

#include <algorithm>
#include <utility>

namespace till {

namespace {

    using DiscountPtr = QSharedPointer<DiscountImpact>;

    [[nodiscard]] Kopecks minimumOf(const GoodsItem& line)
    {
        return std::max<Kopecks>(0, cost(line.getMinPrice(), line.getQuantity()));
    }

    /// What may be taken off a line as it now stands.
    [[nodiscard]] Kopecks roomOf(const GoodsItem& line)
    {
        return std::max<Kopecks>(0, kopecks(line.getSumb()) - minimumOf(line));
    }

    [[nodiscard]] bool takesDiscounts(const GoodsItem& line)
    {
        return line.isAllowDiscount() || line.isAllowOnlyExternalDiscount();
    }

    /// What the discount takes off each position, in kopecks.
    [[nodiscard]] QMap<int, Kopecks> amountsOf(const DocumentImpactDetail& discount, const ChequeContents& contents)
    {
        const bool onCheque = discount.getDiscountObject() == EDiscountObject::cheque;
        QList<int> positions;
        QList<Share> shares;
        for (const QSharedPointer<GoodsItem>& line : contents.liveLines()) {
            if (takesDiscounts(*line) && (onCheque || line->getPosnum() == discount.getPosition())) {
                positions.append(line->getPosnum());
                shares.append({ std::max<Kopecks>(0, kopecks(line->getSumb())), roomOf(*line) });
            }
        }
        const QList<Kopecks> amounts = spread(kopecks(discount.getDiscountSum()), shares);
        QMap<int, Kopecks> byPosition;
        for (qsizetype i = 0; i < positions.size(); ++i) {
            if (amounts.at(i) > 0) {
                byPosition.insert(positions.at(i), amounts.at(i));
            }
        }
        return byPosition;
    }

    /// The document's own record of a discount: the plug-in's stays as the server gave it.
    [[nodiscard]] DiscountPtr recordOf(const DocumentImpactDetail& discount, const QMap<int, Kopecks>& amounts)
    {
        const auto totals = QSharedPointer<DocumentImpactDetail>::create(discount);
        const auto record = DiscountPtr::create(totals);
        Kopecks sum = 0;
        for (auto amount = amounts.cbegin(); amount != amounts.cend(); ++amount) {
            record->addDetailForPosition(amount.key(), roubles(*amount));
            sum += *amount;
        }
        totals->setDiscountSum(roubles(sum));
        return record;
    }

    [[nodiscard]] bool isLoyaltyDiscount(const QSharedPointer<DocumentImpact>& impact)
    {
        return impact.dynamicCast<DiscountImpact>()
            && impact->getTotals()->getImpactSource() == EImpactSource::loyaltySystem;
    }

} // namespace

void workOutLines(ChequeContents& contents)
{
    QMap<int, Kopecks> deductions;
    for (const QSharedPointer<DocumentImpact>& impact : std::as_const(contents.impacts)) {
        const auto details = impact->getDetails();
        for (const QSharedPointer<DocumentImpactDetail>& detail : details) {
            deductions[detail->getPosition()] += kopecks(detail->getDiscountSum());
        }
    }
    for (const QSharedPointer<GoodsItem>& item : contents.liveLines()) {
        if (const auto line = item.dynamicCast<Line>()) {
            const Kopecks full = cost(line->fields.price, line->fields.quantity);
            line->fields.sum = roubles(full - deductions.value(line->fields.posnum));
        }
    }
}

void setLoyaltyDiscounts(ChequeContents& contents, const QList<QSharedPointer<DiscountImpact>>& discounts)
{
    contents.impacts.removeIf(isLoyaltyDiscount);
    workOutLines(contents);
    for (const DiscountPtr& discount : discounts) {
        if (discount) {
            const DocumentImpactDetail& totals = *discount->getTotals();
            contents.impacts.append(recordOf(totals, amountsOf(totals, contents)));
            workOutLines(contents); // the next one finds less room
        }
    }
}

bool hasLoyaltyDiscounts(const ChequeContents& contents)
{
    return std::ranges::any_of(contents.impacts, isLoyaltyDiscount);
}

void dropDiscountsOn(ChequeContents& contents, int position)
{
    QList<QSharedPointer<DocumentImpact>> kept;
    for (const QSharedPointer<DocumentImpact>& impact : std::as_const(contents.impacts)) {
        const auto details = impact->getDetails();
        if (!impact.dynamicCast<DiscountImpact>() || !details.contains(position)) {
            kept.append(impact);
            continue;
        }
        QMap<int, Kopecks> others;
        for (auto detail = details.cbegin(); detail != details.cend(); ++detail) {
            if (detail.key() != position) {
                others.insert(detail.key(), kopecks(detail.value()->getDiscountSum()));
            }
        }
        if (!others.isEmpty()) {
            kept.append(recordOf(*impact->getTotals(), others));
        }
    }
    contents.impacts = kept;
    workOutLines(contents);
}

void setSpentPoints(ChequeContents& contents, const QList<QSharedPointer<BonusImpact>>& impacts)
{
    contents.impacts.removeIf(
        [](const QSharedPointer<DocumentImpact>& impact) { return !impact.dynamicCast<BonusImpact>().isNull(); });
    for (const QSharedPointer<BonusImpact>& impact : impacts) {
        if (impact) {
            contents.impacts.append(impact);
        }
    }
    workOutLines(contents);
}

double roomForPoints(const ChequeContents& contents)
{
    Kopecks room = 0;
    for (const QSharedPointer<GoodsItem>& line : contents.liveLines()) {
        if (line->isAllowBonusSpend()) {
            room += roomOf(*line);
        }
    }
    return roubles(room);
}

} // namespace till
