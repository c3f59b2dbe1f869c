#pragma once

#include "host/export.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <stdexcept>

namespace till {

/// One line of a script: a verb and its arguments. A plain value.
struct ScriptLine {
    int number = 0; // in its file, from 1
    QStringList words; // the verb first; never empty
    QString text; // as it was written
};

/// A line that cannot be carried out, or an expectation that does not hold. The text is one sentence. A value.
class VANTIRO_HOST_API ScriptError : public std::runtime_error {
public:
    explicit ScriptError(const QString& sentence);
    /// Of a line that was carried out before.
    ScriptError(const QString& sentence, int formerLine);
    ScriptError(const ScriptError& other);
    ScriptError& operator=(const ScriptError& other);
    ~ScriptError() override;

    [[nodiscard]] QString text() const;
    /// The number of the line that it is about; 0 for the one that is being carried out.
    [[nodiscard]] int line() const;

private:
    int former = 0;
};

/// The words of a line: parted by blanks, kept together by double quotes, in which `\"` is a quote and `\\` a
/// backslash. What stands behind a `#` that begins a word is a remark. Throws `ScriptError` for a quote that is not
/// closed. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QStringList wordsOf(const QString& line);

/// The lines of a script, without the empty ones. Throws `ScriptError`, which names the line. [any-thread]
[[nodiscard]] VANTIRO_HOST_API QList<ScriptLine> parseScript(const QString& script);

} // namespace till
