#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <string>

/// How one step of the cashier has ended in the child. A plain value.
struct Attempt {
    QString step;
    QString end; // "done", "false", "failed", or "refused: " and why
    QString line = {}; // that the till gives for a store that fails
    QStringList shown = {};
};

/// What a run of the child has told. A plain value.
struct ChildRun {
    QList<Attempt> attempts = {};
    QStringList told = {}; // bodies of the requests that the service counts as accruals
    int failures = -1; // of the disk; -1: the child has not got that far
    bool restored = false;
    bool leftOpen = false; // a document, after the restoring

    /// Takes one line of the child.
    void hear(const QJsonObject& fact);
};

/// "open done, scan failed, scan done".
[[nodiscard]] std::string endsOf(const ChildRun& run);

/// What the cashier must not see: a step that fails without exactly one line that says why, in his language, or such a
/// line with a step that has not failed. Empty when all is well.
[[nodiscard]] std::string unclearLine(const ChildRun& run);

/// What the till has not done although its disk works again. Empty when it has done everything.
[[nodiscard]] std::string refusals(const ChildRun& run);
