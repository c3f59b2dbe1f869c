#pragma once

#include "host/export.h"
#include "till/exchange_events.h"
#include "till/script/script_line.h"
#include "till/script/service_control.h"

#include <QFile>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <mutex>

namespace till {

/// A trace as it was written. A plain value.
struct Trace {
    QString script;
    QString configuration; // of the till, without credentials
    QList<ControlledServer> servers; // that the script names; their control addresses are not kept
    QList<QJsonObject> events; // each with its "step"
};

/// What a script has made the till do, written down as it happens: one JSON object a line, credentials masked. A till
/// that is killed leaves all that it has done, and the one that goes on adds to it. [any-thread]
class VANTIRO_HOST_API TraceRecorder {
public:
    /// Begins a trace in a new file, closed to others, with what it takes to do it all again: all of `head` but its
    /// events. Throws `ScriptError`.
    static void begin(const QString& file, const Trace& head);
    /// Goes on with a trace that was begun; observes exchanges and work as long as it lives. Throws `ScriptError`.
    explicit TraceRecorder(const QString& file);
    ~TraceRecorder();

    /// The index of the line in the script that is carried out from now on.
    void step(qsizetype index);
    /// What the cashier has seen and got in the step.
    void said(const QStringList& shown, const QStringList& printed);
    /// The step has failed.
    void failed(const QString& reason);
    void exchanged(const ExchangeEvent& event);

private:
    Q_DISABLE_COPY(TraceRecorder)

    void write(const QJsonObject& event);

    std::mutex mutex; // tasks beside the cheques make exchanges too
    QFile output;
    qsizetype current = 0;
};

/// Throws `ScriptError`, which names the line that is none of a trace.
[[nodiscard]] VANTIRO_HOST_API Trace readTrace(const QString& file);

/// Whether the exchange looks for a server only: when it comes is a matter of the clock.
[[nodiscard]] VANTIRO_HOST_API bool isSearch(const ExchangeEvent& event);

/// The first difference between what was recorded and what was done again, as lines for a person; empty when there is
/// none. Times count as equal; so do identities, when they stand in the same places of what the till has made itself.
/// What was done again behind the last step that was recorded does not count.
[[nodiscard]] VANTIRO_HOST_API QStringList firstDifference(const Trace& recorded, const Trace& repeated);

/// Answers the exchanges of a step out of the trace, word for word: the first of the same action and address that was
/// not used yet. [any-thread]
class VANTIRO_HOST_API TraceAnswers {
public:
    explicit TraceAnswers(const Trace& trace);

    void step(qsizetype index);
    void answer(ExchangeEvent& event);

private:
    std::mutex mutex;
    QList<QJsonObject> exchanges;
    QList<bool> used;
    qsizetype current = 0;
};

} // namespace till
