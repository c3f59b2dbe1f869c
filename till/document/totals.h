#pragma once

#include "host/document/document_impact.h"
#include "host/export.h"
#include "till/document/cheque_contents.h"

#include <QList>
#include <QSharedPointer>

namespace till {

/// Puts the discounts of a loyalty system on the document in place of those that it carries; discounts of other sources
/// stay. Each becomes a record of the document's own, with a detail for each position that it lowers: a discount on a
/// position lowers that one, a discount on the cheque is spread over the lines to the kopeck, by what they cost. No
/// line goes below its minimum price, below zero, or takes a discount that its goods do not allow; the record then
/// holds what was taken off indeed. Works the lines out anew. [cheque-thread]
VANTIRO_HOST_API void setLoyaltyDiscounts(ChequeContents& contents,
                                          const QList<QSharedPointer<DiscountImpact>>& discounts);

/// Whether the document carries a discount of a loyalty system. [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API bool hasLoyaltyDiscounts(const ChequeContents& contents);

/// Takes what the discounts of the document have taken off a position out of them: its line is live no more. The
/// records then hold what the other lines are lowered by. Works the lines out anew. [cheque-thread]
VANTIRO_HOST_API void dropDiscountsOn(ChequeContents& contents, int position);

/// Puts the points spent on the document in place of those that it carries, as they are, and works the lines out anew.
/// [cheque-thread]
VANTIRO_HOST_API void setSpentPoints(ChequeContents& contents, const QList<QSharedPointer<BonusImpact>>& impacts);

/// Works out what each live line costs: price times quantity, half a kopeck rounded up, less the discounts and the
/// points on it. [cheque-thread]
VANTIRO_HOST_API void workOutLines(ChequeContents& contents);

/// The most that points may pay: what the lines that take points cost above their minimum prices, in roubles.
/// [cheque-thread]
[[nodiscard]] VANTIRO_HOST_API double roomForPoints(const ChequeContents& contents);

} // namespace till
