#pragma once

#include <QString>

/// The elements and attributes of the cheque text. Those that one builder alone uses stand with it.
namespace vantiro::xml {

inline const QString chequeTag = QStringLiteral("Cheque");
inline const QString discountCardTag = QStringLiteral("DiscountCard");
inline const QString chequeLinesTag = QStringLiteral("ChequeLines");
inline const QString chequeLineTag = QStringLiteral("ChequeLine");
inline const QString itemTag = QStringLiteral("Item");
inline const QString discountsTag = QStringLiteral("Discounts");
inline const QString paymentsTag = QStringLiteral("Payments");
inline const QString messagesTag = QStringLiteral("Messages");

inline const QString amount = QStringLiteral("Amount");
inline const QString bonusDiscount = QStringLiteral("BonusDiscount");
inline const QString chequeLineNo = QStringLiteral("ChequeLineNo");
inline const QString chequeNo = QStringLiteral("ChequeNo");
inline const QString chequeType = QStringLiteral("ChequeType");
inline const QString closeTime = QStringLiteral("CloseTime");
inline const QString openTime = QStringLiteral("OpenTime");
inline const QString positionCount = QStringLiteral("PositionCount");
inline const QString status = QStringLiteral("Status");
inline const QString subtractAmount = QStringLiteral("SubtractAmount");
inline const QString subtractedBonus = QStringLiteral("SubtractedBonus");
inline const QString type = QStringLiteral("Type");

inline const QString sale = QStringLiteral("Sale");
inline const QString goodsReturn = QStringLiteral("Return");
inline const QString open = QStringLiteral("Open");
inline const QString closed = QStringLiteral("Closed");
inline const QString canceled = QStringLiteral("Canceled");

} // namespace vantiro::xml
