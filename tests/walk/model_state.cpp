#include "tests/walk/model.h"

using namespace Qt::StringLiterals;

namespace walk {

bool Model::isOffline() const
{
    return document.stored.offline.value_or(false);
}

void Model::updateData(bool offline)
{
    if (document.card) {
        document.card->points = points;
    }
    document.stored.points = points;
    document.stored.discounts = discounts;
    document.stored.bonuses = bonuses;
    document.stored.offline = offline;
    save();
}

void Model::updateCoupons()
{
    document.stored.positionCoupons = positionCoupons;
    document.stored.chequeCoupons = chequeCoupons;
    save();
}

void Model::save()
{
    if (savesFail) {
        throw SavesFail();
    }
    account.told.append(u"save"_s);
    saved = document;
}

void Model::restore()
{
    points = document.stored.points.value_or(0.0);
    if (document.card) {
        document.card->points = points;
    }
    discounts = document.stored.discounts.value_or(QList<Discount>());
    bonuses = document.stored.bonuses.value_or(QList<Bonus>());
    positionCoupons = document.stored.positionCoupons.value_or(QMap<int, QStringList>());
    chequeCoupons = document.stored.chequeCoupons.value_or(QStringList());
    checkData = document.stored.deferredCheck.value_or(CheckData());
}

void Model::clearLoyaltyData()
{
    bonuses = {};
    discounts = {};
    points = 0.0;
    toCashier = {};
    toClient = {};
    if (document.card) {
        document.card->points = 0.0;
    }
}

void Model::clearCoupons()
{
    positionCoupons = {};
    chequeCoupons = {};
}

void Model::clearAfterClose()
{
    clearLoyaltyData();
    clearCoupons();
    checkData = {};
}

void Model::beforePutout()
{
    document.stored.deferredCheck
        = CheckData { QString::number(document.number), document.uid(), QString::number(document.shift) };
}

void Model::reveal()
{
    if (!document.deferred) {
        return;
    }
    if (setting.restoreLoyaltyState) {
        restore();
    } else if (document.card) {
        points = 0.0;
        document.card->points = 0.0;
        document.stored.points = 0.0;
    }
    if (document.stored.deferredCheck) {
        checkData = *document.stored.deferredCheck;
        document.json = uR"({"vantiro":{"chequeNo":"%1"}})"_s.arg(checkData.number.value_or(QString()));
    } else { // the number that was never stored is there from now on, as one that is unknown
        checkData = { u""_s, {}, {} };
        document.json = uR"({"vantiro":{"chequeNo":null}})"_s;
    }
    save();
}

} // namespace walk
