#include "tests/walk/model.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace walk {

Model::Model(const Setting& itsSetting, const Document& first)
    : setting(itsSetting)
    , document(first)
    , saved(first)
{
}

const Script& Model::script() const
{
    return needed;
}

const QStringList& Model::moodsTold() const
{
    return used;
}

View Model::view() const
{
    View view;
    view.points = points;
    view.discounts = discounts;
    view.bonuses = bonuses;
    view.toCashier = toCashier;
    view.toClient = toClient;
    view.error = error;
    view.chequeCoupons = chequeCoupons;
    view.positionCoupons = positionCoupons;
    view.card = document.card;
    view.stored = document.stored;
    view.json = document.json;
    view.coupons = document.coupons;
    return view;
}

Situation Model::situation() const
{
    QStringList held = chequeCoupons;
    for (const QStringList& ofPosition : positionCoupons) {
        held += ofPosition;
    }
    return { document,
             previous.has_value(),
             static_cast<int>(setAside.size()),
             tasks,
             points,
             !bonuses.isEmpty(),
             !positionCoupons.isEmpty(),
             setting.coupons.ofCheque + setting.coupons.ofPosition,
             held,
             QStringLiteral("document-%1").arg(opened),
             100 + opened };
}

Account Model::run(const Step& step)
{
    account = {};
    needed = {};
    used = {};
    moods = step.moods;
    savesFail = step.savesFail;
    try {
        account.result = perform(step);
    } catch (const SavesFail&) {
        account.result = u"throws диск полон"_s;
    }
    return account;
}

QString Model::perform(const Step& step)
{
    switch (step.act) {
    case Act::open:
        open(step.document);
        return u"done"_s;
    case Act::addPosition: {
        int number = 0;
        for (const Line& line : document.live + document.deleted) {
            number = std::max(number, line.number);
        }
        document.currentPosition = number + 1;
        document.live.append({ document.currentPosition, step.amount });
        return u"done"_s;
    }
    case Act::removePosition:
        takeOff(step.number);
        return u"done"_s;
    case Act::selectPosition:
        document.currentPosition = step.number;
        return u"done"_s;
    case Act::event:
        return tellEvent(step.number, static_cast<About>(step.variant));
    case Act::putOut:
        beforePutout();
        setAside.append(document);
        clearAfterClose(); // the host's own part of setting aside
        open(step.document);
        return u"done"_s;
    case Act::bringBack:
        return bringBack();
    case Act::restart:
        restart(static_cast<Restart>(step.number), static_cast<Restoring>(step.variant));
        return u"done"_s;
    case Act::ping:
        return runPing();
    default:
        return performOnCheque(step);
    }
}

QString Model::performOnCheque(const Step& step)
{
    const auto told = [](bool result) { return result ? u"true"_s : u"false"_s; };
    switch (step.act) {
    case Act::identify:
        return identify(step.text);
    case Act::cardInfo:
        return cardInfo();
    case Act::cardNumber:
        return cardNumber(step.number, static_cast<Cashier>(step.variant));
    case Act::request:
        return told(request());
    case Act::hasPoints:
        return told(hasPoints());
    case Act::getPoints:
        return exact(getPoints());
    case Act::setPoints:
        points = step.amount;
        return u"done"_s;
    case Act::spend:
        return told(spend());
    case Act::rollback:
        return told(rollback());
    case Act::cancel:
        logInfo(u"Сброс состояния бонусной системы"_s);
        clearLoyaltyData();
        return told(true);
    case Act::commit:
        return told(commit());
    case Act::addCoupon:
        return told(addCoupon(step.text)) + u", modifiers "_s
            + (setting.coupons.ofCheque.contains(step.text) || setting.coupons.ofPosition.contains(step.text)
                   ? u"dropped"_s
                   : u"kept"_s);
    case Act::deleteCoupon:
        return told(deleteCoupon(step.text));
    case Act::beforePutout:
        beforePutout();
        return u"done"_s;
    case Act::reveal:
        document.deferred = step.variant == 1;
        reveal();
        document.deferred = false;
        return u"done"_s;
    default: // after it was set aside, and after it was closed: the same to the till
        clearAfterClose();
        return u"done"_s;
    }
}

void Model::open(const Document& newDocument)
{
    previous = document;
    document = newDocument;
    saved = document;
    ++opened;
}

// The cheque comes back under a new number, identity and shift of the till.
QString Model::bringBack()
{
    Document back = setAside.takeFirst();
    back.identity += u"-back"_s;
    back.number += 1000;
    back.shift += 1;
    back.deferred = true;
    open(back);
    reveal();
    document.deferred = false;
    return u"done"_s;
}

void Model::restart(Restart from, Restoring how)
{
    if (from == Restart::asSaved) {
        document = saved;
    } else {
        saved = document;
    }
    tasks = 0;
    server = 0;
    checkData = {};
    points = 0.0;
    discounts = {};
    bonuses = {};
    toCashier = {};
    toClient = {};
    error = u": "_s;
    clearCoupons();
    lastCancelled = {};
    if (how != Restoring::none) {
        restore();
    }
}

void Model::logInfo(const QString& text)
{
    account.log.append(u"info: "_s + text);
}

void Model::logError(const QString& text)
{
    account.log.append(u"error: "_s + text);
}

} // namespace walk
