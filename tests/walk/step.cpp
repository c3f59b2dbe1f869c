#include "tests/walk/step.h"

#include "tests/walk/setting.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace walk {

namespace {

// As many as a step can use up: three requests, with two servers beside the current one each.
constexpr int moodsOfStep = 9;

struct Kind {
    Act act;
    const char* name;
    int weight;
};

constexpr std::array kinds {
    Kind { Act::open, "open", 7 },
    Kind { Act::addPosition, "add position", 5 },
    Kind { Act::removePosition, "remove position", 6 },
    Kind { Act::selectPosition, "select position", 2 },
    Kind { Act::identify, "identify card", 7 },
    Kind { Act::cardInfo, "card info", 2 },
    Kind { Act::cardNumber, "card number", 3 },
    Kind { Act::request, "request", 13 },
    Kind { Act::hasPoints, "has points", 6 },
    Kind { Act::getPoints, "get points", 4 },
    Kind { Act::setPoints, "set points", 4 },
    Kind { Act::spend, "spend", 9 },
    Kind { Act::rollback, "roll back", 6 },
    Kind { Act::cancel, "cancel", 1 },
    Kind { Act::commit, "commit", 7 },
    Kind { Act::addCoupon, "add coupon", 16 },
    Kind { Act::deleteCoupon, "delete coupon", 6 },
    Kind { Act::event, "event", 13 },
    Kind { Act::putOut, "set aside", 3 },
    Kind { Act::bringBack, "bring back", 6 },
    Kind { Act::beforePutout, "before set aside", 2 },
    Kind { Act::afterPutout, "after set aside", 1 },
    Kind { Act::reveal, "reveal", 3 },
    Kind { Act::clearAfterClose, "clear after close", 2 },
    Kind { Act::restart, "restart", 6 },
    Kind { Act::ping, "run the ping", 15 },
};

const QList<double>& sums()
{
    static const QList<double> all { 179.80, 89.90, 10.0, 0.05, 33.333 };
    return all;
}

bool isPossible(Act act, const Situation& now)
{
    switch (act) {
    case Act::removePosition:
    case Act::selectPosition:
        return !now.document.live.isEmpty();
    case Act::getPoints: // the host asks for a cheque with a card only
        return now.document.card.has_value();
    case Act::putOut:
        return now.setAside < 2;
    case Act::bringBack:
        return now.setAside > 0;
    case Act::ping:
        return now.tasks > 0;
    default:
        return true;
    }
}

// A walk that has come far goes on from there, and does not linger where nothing is asked any more.
int weight(const Kind& kind, const Situation& now)
{
    if (!isPossible(kind.act, now)) {
        return 0;
    }
    const bool isNearer = (kind.act == Act::rollback && now.hasBonuses)
        || (kind.act == Act::getPoints && now.points > 0.0)
        || (kind.act == Act::removePosition && now.hasPositionCoupons)
        || (kind.act == Act::deleteCoupon && !now.heldCoupons.isEmpty())
        || ((kind.act == Act::open || kind.act == Act::commit) && now.document.stored.offline.value_or(false));
    return isNearer ? 3 * kind.weight : kind.weight;
}

Act drawAct(Dice& dice, const Situation& now)
{
    int total = 0;
    for (const Kind& kind : kinds) {
        total += weight(kind, now);
    }
    int place = dice.below(total);
    for (const Kind& kind : kinds) {
        place -= weight(kind, now);
        if (place < 0) {
            return kind.act;
        }
    }
    return Act::request;
}

// Any number, or one of the preferred ones.
QString drawCoupon(Dice& dice, const QStringList& preferred)
{
    return preferred.isEmpty() || dice.onceIn(3) ? dice.oneOf(couponNumbers()) : dice.oneOf(preferred);
}

Document drawDocument(Dice& dice, const Situation& now)
{
    Document document;
    document.identity = now.nextIdentity;
    document.number = now.nextNumber;
    document.type = dice.oneOf(QList<int> { 1, 1, 1, 1, 1, 2, 2, 25, 25, 3 });
    if (document.type == 25) {
        document.saleNumber
            = dice.oneOf(QList<std::optional<QString>> { std::nullopt, u"77"_s, u"12"_s }); // 12: see the walked till
    }
    document.canGoOffline = !dice.onceIn(4);
    if (!dice.onceIn(3)) {
        document.card
            = Card { dice.oneOf(QStringList { u"9000000001"_s, u"9000000002"_s }),
                     dice.oneOf(QList<std::optional<double>> { std::nullopt, 60.7, 1234.5, 59.9995, -1.5 }), 0.0, 0.0 };
    }
    document.hasOtherCard = dice.onceIn(8);
    document.hasBonusRecord = dice.onceIn(8);
    const int count = dice.below(4);
    for (int number = 1; number <= count; ++number) {
        document.live.append({ number, dice.oneOf(sums()) });
        document.currentPosition = number;
    }
    return document;
}

void drawEvent(Dice& dice, const Situation& now, Step& step)
{
    step.number = dice.oneOf(QList<int> { 9, 10, 10, 10, 10, 12, 12, 12, 22, 22, 22, 21, 11, 20, 1000 });
    QList<About> abouts { About::current, About::current, About::current };
    if (now.hasPrevious) {
        abouts.append(About::previous);
    }
    if (step.number == 12 || step.number == 22) {
        abouts.append({ About::stornoOfCurrent, About::emptyOne });
    }
    step.variant = static_cast<int>(dice.oneOf(abouts));
}

QString told(const Document& document)
{
    QStringList words {
        u"document %1 number %2 type %3"_s.arg(document.identity).arg(document.number).arg(document.type)
    };
    if (document.type == 25) {
        words.append(u"sale %1"_s.arg(document.saleNumber.value_or(u"unknown"_s)));
    }
    words.append(document.card
                     ? u"card %1 with %2"_s.arg(document.card->number, exact(document.card->balance.value_or(0.0)))
                     : u"no card"_s);
    for (const auto& [says, word] : { std::pair { !document.canGoOffline, u"never offline"_s },
                                      std::pair { document.hasOtherCard, u"other card"_s },
                                      std::pair { document.hasBonusRecord, u"bonus record"_s } }) {
        if (says) {
            words.append(word);
        }
    }
    QStringList lines;
    for (const Line& line : document.live) {
        lines.append(exact(line.sum));
    }
    words.append(u"lines "_s + lines.join(u'+'));
    return words.join(u", "_s);
}

} // namespace

Step drawStep(Dice& dice, const Situation& now)
{
    Step step;
    step.act = drawAct(dice, now);
    switch (step.act) {
    case Act::open:
    case Act::putOut:
        step.document = drawDocument(dice, now);
        break;
    case Act::addPosition:
        step.amount = dice.oneOf(sums());
        break;
    case Act::removePosition:
    case Act::selectPosition:
        step.number = dice.oneOf(now.document.live).number;
        break;
    case Act::identify:
        step.text = dice.oneOf(QStringList { u"9000000001"_s, u"9000000002"_s });
        break;
    case Act::cardNumber:
        step.number = dice.oneOf(QList<int> { 1, 1, 1, 2 }); // the type of what was entered
        step.variant = dice.below(4); // a `Cashier`
        break;
    case Act::setPoints:
        step.amount = dice.oneOf(QList<double> { 0.0, 0.005, 0.0051, 10.0, 25.5, 12.349, 5000.0, -1.5 });
        break;
    case Act::addCoupon:
        step.text = drawCoupon(dice, now.ownCoupons);
        break;
    case Act::deleteCoupon:
        step.text = drawCoupon(dice, now.heldCoupons);
        break;
    case Act::event:
        drawEvent(dice, now, step);
        break;
    case Act::reveal:
        step.variant = dice.below(2); // whether the document counts as set aside
        break;
    case Act::restart:
        step.number = dice.below(2); // a `Restart`
        step.variant = dice.oneOf(QList<int> { 0, 0, 1, 1, 2 }); // a `Restoring`
        break;
    default:
        break;
    }
    for (int i = 0; i < moodsOfStep; ++i) {
        step.moods.append(drawMood(dice));
    }
    if (step.act == Act::ping && dice.onceIn(4)) { // all servers at once, which would hardly come by itself
        step.moods.fill({ Manner::refuses, 0 });
    }
    step.savesFail = dice.onceIn(40);
    return step;
}

QString told(Act act)
{
    for (const Kind& kind : kinds) {
        if (kind.act == act) {
            return QString::fromLatin1(kind.name);
        }
    }
    return {};
}

QString told(const Step& step)
{
    const QString name = told(step.act) + u' ';
    const QString failing = step.savesFail ? u" [saves fail]"_s : QString();
    const auto named = [&step](const QStringList& names) { return names.at(step.variant); };
    switch (step.act) {
    case Act::open:
    case Act::putOut:
        return name + u"-> "_s + told(step.document) + failing;
    case Act::addPosition:
    case Act::setPoints:
        return name + exact(step.amount) + failing;
    case Act::removePosition:
    case Act::selectPosition:
        return name + QString::number(step.number) + failing;
    case Act::identify:
    case Act::addCoupon:
    case Act::deleteCoupon:
        return name + u'"' + step.text + u'"' + failing;
    case Act::cardNumber:
        return name + u"type %1, cashier: "_s.arg(step.number)
            + named({ u"right code"_s, u"wrong code"_s, u"code and a blank"_s, u"cancels"_s }) + failing;
    case Act::event:
        return name + u"%1 about "_s.arg(step.number)
            + named({ u"the open document"_s, u"the previous one"_s, u"the storno of the open one"_s,
                      u"an empty one"_s })
            + failing;
    case Act::reveal:
        return name + named({ u"as it is"_s, u"as set aside"_s }) + failing;
    case Act::restart:
        return name + (step.number == 0 ? u"from the last save, "_s : u"from the document as it is, "_s)
            + named({ u"event 9"_s, u"restored by the hook"_s, u"not restored"_s }) + failing;
    default:
        return name.trimmed() + failing;
    }
}

} // namespace walk
