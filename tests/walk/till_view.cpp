#include "tests/walk/till_view.h"

#include "host/facilities/serder.h"

#include <QJsonObject>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

template <class Impact>
QSharedPointer<Impact> restored(const QVariant& entry)
{
    auto impact = QSharedPointer<Impact>::create();
    serder::default_serder_type<Impact>::strategy.deserialize(impact.data(), entry, DocumentImpact::staticMetaObject);
    return impact;
}

Discount recordOf(const QSharedPointer<DiscountImpact>& impact)
{
    const auto totals = impact->getTotals();
    return { totals->getDiscountSum(),
             totals->getDiscountObject() == EDiscountObject::position ? totals->getPosition() : 0,
             totals->getDiscountCode() };
}

Bonus recordOf(const QSharedPointer<BonusImpact>& impact)
{
    Bonus bonus { impact->getTotals()->getDiscountSum(), {} };
    const auto details = impact->getDetails();
    for (auto it = details.cbegin(); it != details.cend(); ++it) {
        bonus.byPosition.insert(it.key(), (*it)->getDiscountSum());
    }
    return bonus;
}

template <class Record, class Impact>
QList<Record> recordsOf(const QList<QSharedPointer<Impact>>& impacts)
{
    QList<Record> records;
    for (const QSharedPointer<Impact>& impact : impacts) {
        records.append(recordOf(impact));
    }
    return records;
}

template <class Record, class Impact>
std::optional<QList<Record>> recordsIn(const QVariant& stored)
{
    if (!stored.isValid()) {
        return {};
    }
    QList<Record> records;
    for (const QVariant& entry : stored.toList()) {
        records.append(recordOf(restored<Impact>(entry)));
    }
    return records;
}

QMap<int, QStringList> couponsIn(const QVariant& stored)
{
    QMap<int, QStringList> coupons;
    const QVariantMap map = stored.toMap();
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        coupons.insert(it.key().toInt(), it->toStringList());
    }
    return coupons;
}

std::optional<CheckData> checkDataIn(const QVariant& stored)
{
    if (!stored.isValid()) {
        return {};
    }
    const QJsonObject object = QJsonObject::fromVariantMap(stored.toMap());
    const auto part = [&object](const QString& key) {
        return object.contains(key) ? std::optional(object.value(key).toString()) : std::nullopt;
    };
    return CheckData { part(u"chequeNo"_s), part(u"chequeUid"_s), part(u"shiftNo"_s) };
}

} // namespace

CouponStores storesOf(const OpenVantiro& plugin, const QSharedPointer<AbstractDocument>& probe)
{
    plugin.updateCouponsPluginData(probe);
    return { probe->getValue(u"Vantiro"_s, u"checkCoupons"_s, {}).toStringList(),
             couponsIn(probe->getValue(u"Vantiro"_s, u"positionCoupons"_s, {})) };
}

View viewOf(TillAtWork& till, const CouponStores& coupons)
{
    OpenVantiro& plugin = till.plugin;
    View view;
    view.points = plugin.pointsForSpend;
    view.discounts = recordsOf<Discount>(plugin.discountImpacts);
    view.bonuses = recordsOf<Bonus>(plugin.bonusImpacts);
    view.toCashier = plugin.messagesToCashier;
    view.toClient = plugin.messagesToClient;
    view.error = QString::fromStdString(till.lastError());

    view.chequeCoupons = coupons.ofCheque;
    view.positionCoupons = coupons.ofPosition;
    if (const QSharedPointer<till::Card> card = till.card()) {
        const QVariant balance = card->fields.bonusBalance;
        view.card = Card { card->fields.number.toString(),
                           balance.isValid() ? std::optional(balance.toDouble()) : std::nullopt,
                           card->fields.pointsForSpend, card->fields.spentSum };
    }
    if (const QVariant points = till.stored(u"pointsForSpend"_s); points.isValid()) {
        view.stored.points = points.toDouble();
    }
    view.stored.discounts = recordsIn<Discount, DiscountImpact>(till.stored(u"discountImpacts"_s));
    view.stored.bonuses = recordsIn<Bonus, BonusImpact>(till.stored(u"bonusImpacts"_s));
    if (const QVariant offline = till.stored(u"offlineMode"_s); offline.isValid()) {
        view.stored.offline = offline.toBool();
    }
    if (const QVariant stored = till.stored(u"positionCoupons"_s); stored.isValid()) {
        view.stored.positionCoupons = couponsIn(stored);
    }
    if (const QVariant stored = till.stored(u"checkCoupons"_s); stored.isValid()) {
        view.stored.chequeCoupons = stored.toStringList();
    }
    view.stored.deferredCheck
        = checkDataIn(till.document()->getValue(plugin.getStoreDataKey(), u"deferredCheck"_s, {}));
    view.json = till.document()->getPluginDataJson();
    for (const CouponPtr& coupon : std::as_const(till.contents().coupons)) {
        view.coupons.append(coupon->getNumber());
    }
    return view;
}

} // namespace walk
