#include "tests/bonus/impact_text.h"

#include <QLocale>

namespace {

QString number(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

QString variant(const QVariant& value)
{
    return value.isValid() ? QLatin1String(value.typeName()) + u' ' + value.toString() : QStringLiteral("none");
}

}

std::string impactText(const QSharedPointer<DocumentImpact>& impact)
{
    const QSharedPointer<DocumentImpactDetail> totals = impact->getTotals();
    const QSharedPointer<DocumentCardRecord> card = totals->getCardRecord();
    QStringList details;
    const auto byPosition = impact->getDetails();
    for (auto it = byPosition.cbegin(); it != byPosition.cend(); ++it) {
        details.append(QString::number(it.key()) + QStringLiteral(": ") + number(it.value()->getDiscountSum()));
    }
    const QStringList fields {
        u'\'' + totals->getDiscountName() + QStringLiteral("' at ") + totals->getDateTime().toString(Qt::ISODate),
        QStringLiteral("type %1").arg(static_cast<int>(totals->getDiscountType())),
        QStringLiteral("rate ") + variant(totals->getDiscountRate()),
        QStringLiteral("mode %1").arg(static_cast<int>(totals->getDiscountMode())),
        QStringLiteral("object %1").arg(static_cast<int>(totals->getDiscountObject())),
        QStringLiteral("position %1").arg(totals->getPosition()),
        QStringLiteral("sum ") + number(totals->getDiscountSum()),
        QStringLiteral("code %1").arg(totals->getDiscountCode()),
        QStringLiteral("source %1").arg(static_cast<int>(totals->getImpactSource())),
        totals->isMinPriceIgnored() ? QStringLiteral("minimum price ignored") : QStringLiteral("minimum price kept"),
        QStringLiteral("card ") + (card.isNull() ? QStringLiteral("none") : card->getNumber().toString()),
        QStringLiteral("index ") + variant(totals->getCardIndex()),
        QStringLiteral("details {") + details.join(QStringLiteral("; ")) + u'}',
    };
    return fields.join(QStringLiteral(", ")).toStdString();
}
