#pragma once

#include "tests/walk/mood.h"
#include "tests/walk/records.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace walk {

enum class Act {
    open,
    addPosition,
    removePosition,
    selectPosition,
    identify,
    cardInfo,
    cardNumber,
    request,
    hasPoints,
    getPoints,
    setPoints,
    spend,
    rollback,
    cancel,
    commit,
    addCoupon,
    deleteCoupon,
    event,
    putOut,
    bringBack,
    beforePutout,
    afterPutout,
    reveal,
    clearAfterClose,
    restart,
    ping,
};

/// What the cashier answers to a form.
enum class Cashier { rightCode, wrongCode, codeAndBlank, cancels };

/// Which document an event is about.
enum class About { current, previous, stornoOfCurrent, emptyOne };

/// What of a document a restart finds.
enum class Restart { asSaved, asItIs };

/// How the plug-in is told to restore after a restart.
enum class Restoring { byEvent, byHook, none };

/// One thing that the till does, with all that has been drawn for it. Which of the values an act reads stands with
/// `drawStep`. A plain value.
struct Step {
    Act act = Act::request;
    QString text;
    int number = 0;
    int variant = 0;
    double amount = 0.0;
    Document document; // of `open` and `putOut`: the one that is opened
    QList<Mood> moods; // of the servers, for one request after the other
    bool savesFail = false;
};

/// What a step can be drawn for: the open document and what else is at hand.
struct Situation {
    const Document& document;
    bool hasPrevious = false;
    int setAside = 0; // cheques
    int tasks = 0; // that the till has still to run
    double points = 0.0; // that could be spent
    bool hasBonuses = false; // points have been spent
    bool hasPositionCoupons = false;
    QStringList ownCoupons; // numbers that are this system's by the configuration
    QStringList heldCoupons; // numbers that the plug-in keeps
    QString nextIdentity; // of a document that is opened
    int nextNumber = 0;
};

[[nodiscard]] Step drawStep(Dice& dice, const Situation& situation);

/// The step without the moods: "add coupon C100".
[[nodiscard]] QString told(const Step& step);
[[nodiscard]] QString told(Act act);

} // namespace walk
