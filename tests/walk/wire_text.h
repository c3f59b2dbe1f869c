#pragma once

#include <QByteArray>
#include <QString>

namespace walk {

/// What a request says, in one line: the operation and its parameters, a cheque by what tells it from others.
///
///     SubtractBonus45 discountCardNumber=9000000001 amount=10.00 cheque={no=101 … lines=1:179.80/0.00[C1] coupons=}
///
/// A line of a cheque reads position:amount/points[coupons], a card number/points.
[[nodiscard]] QString wireText(const QByteArray& envelope);

} // namespace walk
