#pragma once

#include <QString>

namespace walk {

// What the service says when it answers, by action. Six answers each; the first ones are ordinary, the last ones are at
// the edge of what can be used, or beyond it.

/// The text of the result element. Empty for an action whose result is not read.
[[nodiscard]] QString answerTo(const QString& action, int variant);

} // namespace walk
