#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>

/// How a program ended. A plain value.
struct ProgramRun {
    int status = -1; // -1: it did not end by itself
    std::string output;
    std::string errors;
};

/// Runs the program to its end, with this standard input. [blocks: a minute at the longest]
[[nodiscard]] ProgramRun runProgram(const QString& program, const QStringList& arguments, const QByteArray& input = {});

/// The till, with a data folder of its own that is gone afterwards.
class TillProgram {
public:
    /// With `--data` added.
    [[nodiscard]] ProgramRun run(const QStringList& arguments, const QByteArray& input = {}) const;
    /// Plays a script of this text, with these options besides.
    [[nodiscard]] ProgramRun play(const QByteArray& script, const QStringList& options = {}) const;

    [[nodiscard]] QString path(const QString& name) const;
    /// Writes a file in the folder and gives its path.
    QString write(const QString& name, const QByteArray& content) const;

private:
    QTemporaryDir folder;
};
