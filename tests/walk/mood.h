#pragma once

#include "tests/support/scripted_rest_client.h"
#include "tests/walk/dice.h"

#include <QString>

namespace walk {

/// How a server takes one request.
enum class Manner {
    answers,
    answersAsError, // the same answer, with the status 500
    fault,
    refuses, // no HTTP reply
    status503,
    status404,
    damaged, // what comes is not XML
    noResult, // the reply lacks the element of the result
    twoResults, // the element stands twice
    plainText, // the result is a text where XML or a number is due
    emptyResult,
};

/// A manner and which of its answers it is. A plain value.
struct Mood {
    static constexpr int variants = 6;

    Manner manner = Manner::answers;
    int variant = 0; // less than `variants`
};

[[nodiscard]] Mood drawMood(Dice& dice);
[[nodiscard]] QString told(const Mood& mood);

/// How a request of that action ends. What each answer holds stands with `answerTo`.
[[nodiscard]] RestOutcome outcome(const QString& action, const Mood& mood);

/// The text of the fault: an ordinary one, two that are joined, or none.
[[nodiscard]] QString faultText(int variant);

} // namespace walk
