#include "tests/disk/faults/child_run.h"

#include <QJsonArray>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// In one line, with the till's own words first and the cause in his language.
[[nodiscard]] bool isClear(const QString& line)
{
    const QStringList causes { u"На диске нет места"_s, u"На диск нельзя писать"_s,
                               u"Диск не читается или не пишется"_s, u"на диске нет места для нового чека"_s };
    return line.startsWith(u"Ошибка базы данных кассы: "_s) && !line.contains(u'\n')
        && std::ranges::any_of(causes, [&line](const QString& cause) { return line.endsWith(cause); });
}

} // namespace

void ChildRun::hear(const QJsonObject& fact)
{
    if (fact.contains(u"step"_s)) {
        Attempt attempt { fact[u"step"_s].toString(), fact[u"end"_s].toString(), fact[u"line"_s].toString() };
        const QJsonArray lines = fact[u"shown"_s].toArray();
        for (const QJsonValue& line : lines) {
            attempt.shown.append(line.toString());
        }
        attempts.append(attempt);
    } else if (fact.contains(u"heard"_s)) {
        if (fact[u"heard"_s].toString().endsWith(u"Accrual"_s)) {
            told.append(fact[u"body"_s].toString());
        }
    } else if (fact.contains(u"failures"_s)) {
        failures = fact[u"failures"_s].toInt();
    } else {
        restored = fact[u"restored"_s].toBool();
        leftOpen = fact[u"open"_s].toBool();
    }
}

std::string endsOf(const ChildRun& run)
{
    QStringList ends;
    for (const Attempt& attempt : run.attempts) {
        ends.append(attempt.step + u' ' + attempt.end);
    }
    return ends.join(u", "_s).toStdString();
}

std::string unclearLine(const ChildRun& run)
{
    for (const Attempt& attempt : run.attempts) {
        const QStringList also
            = attempt.shown.filter(u"Ошибка"_s) + attempt.shown.filter(u"диск"_s, Qt::CaseInsensitive);
        const bool failed = attempt.end == u"failed";
        if (failed != isClear(attempt.line) || !also.isEmpty()) {
            return (attempt.step + u": "_s + attempt.line + u" | "_s + attempt.shown.join(u" | "_s)).toStdString();
        }
    }
    return std::string();
}

std::string refusals(const ChildRun& run)
{
    std::string text;
    for (const Attempt& attempt : run.attempts) {
        if (attempt.end != u"done" && attempt.end != u"failed") {
            text += (attempt.step + u' ' + attempt.end + u"; "_s).toStdString();
        }
    }
    return text;
}
