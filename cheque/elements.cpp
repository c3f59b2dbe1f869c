#include "cheque/elements.h"

#include "cheque/names.h"
#include "client/forms.h"
#include "client/xml_text.h"

#include <QDomDocument>

namespace vantiro::xml {

QDomElement makeElement(const QDomElement& parent, const QString& tag)
{
    return parent.ownerDocument().createElement(tag);
}

QDomElement appendElement(QDomElement& parent, const QString& tag)
{
    QDomElement element = makeElement(parent, tag);
    parent.appendChild(element);
    return element;
}

void appendDiscountCard(QDomElement& cheque, const QString& number, double amountToSubtract, bool bonusCard)
{
    QDomElement card = makeElement(cheque, discountCardTag);
    card.setAttribute(QStringLiteral("DiscountCardID"), QStringLiteral("0"));
    card.setAttribute(QStringLiteral("EnteredAsPhoneNumber"), QStringLiteral("false"));
    // The reverse of the cheque's own attributes, on purpose: here the sum stands in `SubtractAmount`.
    card.setAttribute(subtractAmount, forms::money(amountToSubtract));
    card.setAttribute(subtractedBonus, QStringLiteral("0"));
    card.setAttribute(QStringLiteral("DiscountCardNo"), xmlText(number));
    card.setAttribute(QStringLiteral("BonusCard"), forms::boolean(bonusCard));
    cheque.appendChild(card);
}

} // namespace vantiro::xml
