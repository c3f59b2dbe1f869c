#pragma once

#include "host/export.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace till {

/// What the cashier sees and says, while a script or a shell drives the till: texts go to the output as they come, and
/// are kept for expectations; answers come from the script, or else from whoever can be asked. While one lives, it is
/// the till's `cashier()`; afterwards the terminal is again. [cheque-thread]
class VANTIRO_HOST_API Screen {
public:
    /// Takes each line of output; `ask` answers a form that the script has no answer for, none means that it is
    /// cancelled.
    Screen(std::function<void(const QString&)> output, std::function<std::optional<QString>(const QString&)> ask);
    ~Screen();

    /// The next form gets this answer.
    void answerNext(const QString& text);
    /// Answers that nobody has asked for are dropped.
    void dropAnswers();

    /// A new step begins: what was shown before is no part of it.
    void beginStep();
    /// The texts shown in the step.
    [[nodiscard]] const QStringList& shown() const;
    /// The slips printed in the step, as text.
    [[nodiscard]] const QStringList& printed() const;
    /// Every slip printed so far.
    [[nodiscard]] const QStringList& slips() const;

    /// A line of the till's own.
    void write(const QString& line) const;

private:
    Q_DISABLE_COPY(Screen)

    std::function<void(const QString&)> output;
    std::function<std::optional<QString>(const QString&)> askElsewhere;
    QStringList answers;
    QStringList shownTexts;
    QStringList printedSlips;
    QStringList allSlips;
};

} // namespace till
