#pragma once

#include <QDomElement>
#include <QString>

/// The pieces that more than one cheque is made of.
namespace vantiro::xml {

/// Makes an element in the document of the parent. Not yet appended.
[[nodiscard]] QDomElement makeElement(const QDomElement& parent, const QString& tag);

/// Makes an element in the document of the parent and appends it.
QDomElement appendElement(QDomElement& parent, const QString& tag);

/// Appends a `DiscountCard`: the customer's card, or a certificate, which is no bonus card.
void appendDiscountCard(QDomElement& cheque, const QString& number, double subtractAmount, bool bonusCard);

} // namespace vantiro::xml
