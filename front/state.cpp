#include "front/vantiro.h"

#include "front/state_keys.h"
#include "host/facilities/serder.h"
#include "host/framework/save_to_file_logic.h"

#include <QJsonObject>

using namespace vantiro;

namespace {

template <class Impact>
[[nodiscard]] QVariantList stored(const QList<QSharedPointer<Impact>>& impacts)
{
    QVariantList list;
    for (const QSharedPointer<Impact>& impact : impacts) {
        QVariant value; // invalid for a null element, so that the list keeps its length
        if (impact) {
            serder::default_serder_type<Impact>::strategy.serialize(&value, impact.data(),
                                                                    DocumentImpact::staticMetaObject);
        }
        list.append(value);
    }
    return list;
}

template <class Impact>
[[nodiscard]] QList<QSharedPointer<Impact>> restored(const QVariant& value)
{
    QList<QSharedPointer<Impact>> impacts;
    for (const QVariant& entry : value.toList()) {
        QSharedPointer<Impact> impact;
        if (!entry.isNull()) {
            impact = QSharedPointer<Impact>::create();
            serder::default_serder_type<Impact>::strategy.deserialize(impact.data(), entry,
                                                                      DocumentImpact::staticMetaObject);
        }
        impacts.append(impact);
    }
    return impacts;
}

/// What makes stored values durable: writing them to the document alone does not.
void save(const QSharedPointer<AbstractDocument>& document)
{
    MockFactory<SaveToFileLogic>::create()->save(document, QString());
}

} // namespace

void Vantiro::updatePluginData(const QSharedPointer<AbstractDocument>& doc, bool offline) const
{
    if (const QSharedPointer<DocumentCardRecord> card = getCard()) {
        card->setPointsForSpend(pointsForSpend);
    }
    const QString group = state::group(*this);
    doc->setValue(group, state::pointsForSpend, pointsForSpend);
    doc->setValue(group, state::discountImpacts, stored(discountImpacts));
    doc->setValue(group, state::bonusImpacts, stored(bonusImpacts));
    doc->setValue(group, state::offlineMode, offline);
    save(doc);
}

void Vantiro::updateCouponsPluginData(const QSharedPointer<AbstractDocument>& doc) const
{
    QVariantMap byPosition;
    for (auto it = positionCoupons.cbegin(); it != positionCoupons.cend(); ++it) {
        byPosition.insert(QString::number(it.key(), 10), QVariant::fromValue(it.value()));
    }
    const QString group = state::group(*this);
    doc->setValue(group, state::positionCoupons, byPosition);
    doc->setValue(group, state::checkCoupons, QVariant::fromValue(checkCoupons));
    save(doc);
}

bool Vantiro::restoreLoyaltySystem()
{
    const QString group = state::group(*this);
    const auto value = [&](const QString& key) { return document->getValue(group, key, QVariant()); };

    pointsForSpend = value(state::pointsForSpend).toDouble();
    if (const QSharedPointer<DocumentCardRecord> card = getCard()) {
        card->setPointsForSpend(pointsForSpend);
    }
    discountImpacts = restored<DiscountImpact>(value(state::discountImpacts));
    bonusImpacts = restored<BonusImpact>(value(state::bonusImpacts));

    positionCoupons.clear();
    const QVariantMap byPosition = value(state::positionCoupons).toMap();
    for (auto it = byPosition.cbegin(); it != byPosition.cend(); ++it) {
        positionCoupons.insert(it.key().toInt(nullptr, 10), it.value().toStringList());
    }
    checkCoupons = value(state::checkCoupons).toStringList();

    interface->setCheckData(QJsonObject::fromVariantMap(getPluginData(state::deferredCheck, QVariant()).toMap()));
    return true;
}

void Vantiro::clearLoyaltyData()
{
    BasicLoyaltySystem::clearLoyaltyData();
    if (const QSharedPointer<DocumentCardRecord> card = getCard()) {
        card->setPointsForSpend(0.0);
    }
}

void Vantiro::clearAfterClose()
{
    clearLoyaltyData();
    clearCoupons();
    interface->setCheckData(QJsonObject()); // a later cheque would go out under the identity of this one
}
