#include "bonus/vantiro_bonus_interface.h"

#include "bonus/records.h"
#include "client/exceptions.h"
#include "client/outside_xml.h"
#include "client/reply.h"
#include "client/wire.h"
#include "client/xml_writer.h"
#include "host/facilities/current_time.h"

using namespace vantiro;

namespace {

/// What both kinds of discount have in common. The sum is the server's: nothing is computed here.
[[nodiscard]] QSharedPointer<DocumentImpactDetail> makeDetail(const QDomElement& discount)
{
    const auto detail = QSharedPointer<DocumentImpactDetail>::create();
    detail->setDiscountCode(reply::requireInteger(discount, QStringLiteral("DiscountID")));
    detail->setDiscountSum(reply::requireNumber(discount, QStringLiteral("Amount")));
    detail->setDateTime(MockFactory<CurrentTime>::create()->getCurrentTime());
    detail->setDiscountType(EDiscountType::sum);
    detail->setDiscountMode(EDiscountMode::loyalty);
    detail->setImpactSource(EImpactSource::loyaltySystem);
    detail->setMinPriceIgnored(false);
    return detail;
}

} // namespace

QList<QSharedPointer<DiscountImpact>> VantiroBonusInterface::getDiscounts(
    const QSharedPointer<AbstractDocument>& document, const QMap<int, QList<QString>>& positionCoupons,
    const QList<QString>& checkCoupons)
{
    const QString action = QStringLiteral("GetDiscounts");
    wire::Request request(action);
    // No granted discounts in this cheque: they are what is being asked for.
    request.addCheque(getXmlCheckString(buildXmlCheck(document, positionCoupons, checkCoupons, {})));
    const QDomDocument answer = processSoapMessage(request.getDocument(), request.getBody(), action);

    const QDomElement result = reply::requireSingle(
        answer, QStringLiteral("GetDiscountsResult"),
        tr::Tr(QStringLiteral("vantiroDiscountsNotFound"),
               QStringLiteral("В ответе от сервера не найден результат дисконтных воздействий")));
    const QString text = result.text();
    if (text.isEmpty()) {
        logger->info("Нет дисконтных воздействий");
        return {};
    }

    const QDomDocument discounts = processResponseXml(text);
    logger->trace("Данные ответа от сервера: \n%1", writeXml(discounts));
    const QList<QSharedPointer<DiscountImpact>> impacts
        = extractCheckDiscounts(discounts) + extractPositionDiscounts(discounts);

    if (const QSharedPointer<DocumentCardRecord> card = document->getCardRecord(records::cardMode)) {
        for (const QSharedPointer<DiscountImpact>& impact : impacts) {
            impact->getTotals()->setCardRecord(card);
            impact->getTotals()->setCardIndex(QVariant(card->getCodeInternal()));
        }
    }
    return impacts;
}

QDomDocument VantiroBonusInterface::processResponseXml(const QString& text) const
{
    const XmlReading reading = readOutsideXml(text);
    if (!reading.ok) {
        logger->error("Не удалось разобрать ответ от сервера(%1, [%2,%3])", reading.errorText, reading.line,
                      reading.column);
        throw VantiroException(reply::incorrectAnswer());
    }
    return reading.document;
}

QList<QSharedPointer<DiscountImpact>> VantiroBonusInterface::extractCheckDiscounts(const QDomDocument& answer) const
{
    QList<QSharedPointer<DiscountImpact>> impacts;
    // Below the first cheque at any depth. Lines nested in it are read here as well as in their own right: that double
    // reading is the service's contract.
    const QDomElement cheque = answer.elementsByTagName(QStringLiteral("Cheque")).at(0).toElement();
    const QDomNodeList discounts = cheque.elementsByTagName(QStringLiteral("Discount"));
    for (int i = 0; i < discounts.length(); ++i) {
        const QSharedPointer<DocumentImpactDetail> detail = makeDetail(discounts.at(i).toElement());
        detail->setDiscountName(records::chequeDiscountName);
        detail->setDiscountObject(EDiscountObject::cheque);
        impacts.append(QSharedPointer<DiscountImpact>::create(detail));
    }
    return impacts;
}

QList<QSharedPointer<DiscountImpact>> VantiroBonusInterface::extractPositionDiscounts(const QDomDocument& answer) const
{
    QList<QSharedPointer<DiscountImpact>> impacts;
    const QDomNodeList lines = answer.elementsByTagName(QStringLiteral("ChequeLine"));
    for (int i = 0; i < lines.length(); ++i) {
        const QDomElement line = lines.at(i).toElement();
        const int position = reply::requireInteger(line, QStringLiteral("ChequeLineNo"));
        const QDomNodeList discounts = line.elementsByTagName(QStringLiteral("Discount"));
        for (int j = 0; j < discounts.length(); ++j) {
            const QDomElement discount = discounts.at(j).toElement();
            const QSharedPointer<DocumentImpactDetail> detail = makeDetail(discount);
            // Required of every line's discount, also where it is not a percentage.
            const double percent = reply::requireNumber(discount, QStringLiteral("Percent"));
            if (discount.attribute(QStringLiteral("Type")) == u"Percent") {
                detail->setDiscountType(EDiscountType::percent);
                detail->setDiscountRate(percent); // for the host to show; the sum stays the server's
            }
            detail->setDiscountName(records::positionDiscountName);
            detail->setDiscountObject(EDiscountObject::position);
            detail->setPosition(position);
            impacts.append(QSharedPointer<DiscountImpact>::create(detail));
        }
    }
    return impacts;
}
