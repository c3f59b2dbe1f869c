#pragma once

#include <QList>
#include <QString>

namespace till::diagnosis {

enum class Verdict { ok, warning, failed };

/// What a check has found: one sentence for the person at the terminal. When it is not ok, the sentence says what to
/// do. Never holds a credential. A plain value.
struct Finding {
    Verdict verdict = Verdict::ok;
    QString sentence;
};
using Findings = QList<Finding>;

[[nodiscard]] Finding ok(const QString& sentence);
[[nodiscard]] Finding warning(const QString& sentence);
[[nodiscard]] Finding failed(const QString& sentence);

/// The finding as it is printed: its verdict ("ok", "warning" or "FAILED"), filled up to eight columns, and the
/// sentence. One line without its end, whatever a server has put into the sentence.
[[nodiscard]] QString lineOf(const Finding& finding);

/// "1 message", "2 messages".
[[nodiscard]] QString counted(qint64 number, const QString& thing);

} // namespace till::diagnosis
