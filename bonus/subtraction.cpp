#include "bonus/vantiro_bonus_interface.h"

#include "bonus/card_of_document.h"
#include "bonus/records.h"
#include "client/exceptions.h"
#include "client/forms.h"
#include "client/outside_xml.h"
#include "client/reply.h"
#include "client/wire.h"
#include "client/xml_writer.h"

using namespace vantiro;

namespace {

/// Both operations send the same three parameters.
void addParameters(wire::Request& request, const QString& cardNumber, double amount, const QString& cheque)
{
    request.addText(wire::cardNumberTag, cardNumber);
    request.addText(wire::amountTag, forms::money(amount));
    request.addCheque(cheque);
}

/// The first element of that tag, null if there is none.
[[nodiscard]] QDomElement requireFirst(const QDomDocument& answer, const QString& tag)
{
    const QDomElement element = answer.elementsByTagName(tag).at(0).toElement();
    if (element.isNull()) {
        throw VantiroException(reply::incorrectAnswer());
    }
    return element;
}

} // namespace

QSharedPointer<BonusImpact> VantiroBonusInterface::subtractBonus(const QSharedPointer<AbstractDocument>& document,
                                                                 double amount)
{
    const QSharedPointer<DocumentCardRecord> card = requireCard(document);

    const QString action = QStringLiteral("SubtractBonus45");
    wire::Request request(action);
    addParameters(request, card->getNumber().toString(), amount, getXmlCheckString(buildXmlCheck(document, {}, {}, {})));
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    // From here on the server has taken the points. A reply that cannot be used loses the record all the same, and
    // nothing is sent to undo it: what the server did is not known, and a guess about money is worse than none.
    const QSharedPointer<BonusImpact> impact = prepareBonusImpact(document, amount);
    const QDomElement result = requireFirst(answer, QStringLiteral("SubtractBonus45Result"));
    const XmlReading inner = readOutsideXml(removeEscapeFromXml(result.text()));
    if (!inner.ok) {
        logger->error("Не удалось интерпретировать ответ от сервера(%1, [%2,%3])", inner.errorText, inner.line,
                      inner.column);
        throw VantiroException(reply::incorrectAnswer());
    }
    logger->trace("Данные ответа от сервера: \n%1", writeXml(inner.document));

    const QDomNodeList lines = inner.document.elementsByTagName(QStringLiteral("ChequeLine"));
    for (int i = 0; i < lines.length(); ++i) {
        const QDomElement line = lines.at(i).toElement();
        const int position = reply::requireInteger(line, QStringLiteral("ChequeLineNo"));
        impact->addDetailForPosition(position, reply::requireNumber(line, QStringLiteral("Amount")));
    }
    return impact;
}

QSharedPointer<BonusImpact> VantiroBonusInterface::prepareBonusImpact(const QSharedPointer<AbstractDocument>& document,
                                                                      double amount) const
{
    const QSharedPointer<DocumentCardRecord> card = document->getCardRecord(records::cardMode);
    const auto detail = QSharedPointer<DocumentImpactDetail>::create();
    detail->setCardRecord(card);
    detail->setCardIndex(QVariant(card->getCodeInternal()));
    detail->setDateTime(QDateTime::currentDateTime());
    detail->setDiscountType(EDiscountType::bonus);
    detail->setDiscountMode(EDiscountMode::loyalty);
    detail->setDiscountName(records::bonusName);
    detail->setDiscountObject(EDiscountObject::cheque);
    detail->setDiscountRate(amount);
    detail->setDiscountSum(amount);
    detail->setImpactSource(EImpactSource::loyaltySystem);
    detail->setMinPriceIgnored(false);
    return QSharedPointer<BonusImpact>::create(detail);
}

void VantiroBonusInterface::cancelSubtractBonus(const QSharedPointer<AbstractDocument>& document, double amount)
{
    const QSharedPointer<DocumentCardRecord> card = requireCard(document);
    VantiroInterface::cancelSubtractBonus(document, card->getNumber().toString(), amount);
}

void VantiroInterface::cancelSubtractBonus(const QSharedPointer<AbstractDocument>& document, const QString& cardNumber,
                                           double amount)
{
    const QString action = QStringLiteral("CancelSubtractBonus");
    wire::Request request(action);
    addParameters(request, cardNumber, amount, getXmlCheckString(buildXmlCheck(document, {}, {}, {})));
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);
    static_cast<void>(requireFirst(answer, QStringLiteral("CancelSubtractBonusResponse"))); // this one has no result
}
