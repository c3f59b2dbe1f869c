#include "tests/walk/setting.h"

#include <QList>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

const QString chequePrefix = u"Vantiro:checkCouponPrefix"_s;
const QString chequeMask = u"Vantiro:checkCouponMask"_s;
const QString positionPrefix = u"Vantiro:positionCouponPrefix"_s;
const QString positionMask = u"Vantiro:positionCouponMask"_s;

// Which number is whose is written out by hand: a rule that worked it out could be wrong in the same way twice.
const QList<CouponRules>& allCouponRules()
{
    static const QList<CouponRules> rules {
        { u"default"_s, {}, { u"vantiro1"_s, u"vantiro2"_s }, { u"vantiro1"_s, u"vantiro2"_s } },
        { u"prefixes"_s,
          { { chequePrefix, u"C"_s }, { positionPrefix, u"P"_s } },
          { u"C100"_s, u"C1"_s },
          { u"P7"_s, u"P8"_s } },
        { u"masks"_s, { { chequeMask, u"12.*"_s }, { positionMask, u"34\\d+"_s } }, { u"12345"_s }, { u"3456"_s } },
        { u"mask before prefix"_s,
          { { chequeMask, u"C\\d{3}"_s }, { chequePrefix, u"C"_s }, { positionPrefix, u"P"_s } },
          { u"C100"_s },
          { u"P7"_s, u"P8"_s } },
        { u"a position prefix alone"_s,
          { { chequePrefix, u""_s }, { positionPrefix, u"C"_s } },
          {},
          { u"C100"_s, u"C1"_s } },
        { u"a mask that is none"_s, { { chequeMask, u"["_s }, { positionPrefix, u"P"_s } }, {}, { u"P7"_s, u"P8"_s } },
        { u"both kinds in part"_s,
          { { chequePrefix, u"P"_s }, { positionMask, u"P7|C1"_s } },
          { u"P7"_s, u"P8"_s },
          { u"P7"_s, u"C1"_s } },
        { u"nothing"_s, { { chequePrefix, u""_s }, { positionPrefix, u""_s } }, {}, {} },
    };
    return rules;
}

} // namespace

const QStringList& couponNumbers()
{
    static const QStringList numbers { u"vantiro1"_s, u"vantiro2"_s, u"C100"_s,   u"C1"_s,   u"c100"_s, u"P7"_s,
                                       u"P8"_s,       u"12345"_s,    u"x12345"_s, u"3456"_s, u"34x"_s,  u""_s };
    return numbers;
}

QMap<QString, QVariant> Setting::keys() const
{
    QMap<QString, QVariant> all = coupons.keys;
    all.insert(u"Vantiro:hosts"_s, hosts.join(u','));
    all.insert(u"Vantiro:restoreLoyaltyState"_s, restoreLoyaltyState);
    return all;
}

Setting drawSetting(Dice& dice)
{
    const QList<QStringList> servers {
        { u"http://server/"_s },
        { u"http://server/"_s, u"http://second/"_s },
        { u"http://server/"_s, u""_s, u"http://third/"_s },
    };
    Setting setting;
    setting.coupons = dice.oneOf(allCouponRules());
    setting.hosts = dice.oneOf(servers);
    setting.restoreLoyaltyState = dice.onceIn(2);
    setting.step = dice.oneOf(QList<double> { 0.0, 1.0, 0.5, 0.01 });
    return setting;
}

QString told(const Setting& setting)
{
    return u"coupons: %1; servers: %2; state restored: %3; step: %4"_s.arg(
        setting.coupons.name, setting.hosts.join(u','), setting.restoreLoyaltyState ? u"yes"_s : u"no"_s,
        QString::number(setting.step));
}

} // namespace walk
