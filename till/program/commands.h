#pragma once

#include "till/program/surroundings.h"
#include "till/script/service_control.h"
#include "till/script/trace.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

// The commands of the program. Each gives the exit status, writes its results to standard output, and throws
// `CommandError` when it cannot begin.
namespace till {

struct PlayOptions {
    Places places;
    QString script; // a file, or "-" for standard input
    QList<ControlledServer> servers;
    bool showWire = false;
    QString trace; // a new file that tells what was done; empty for none
    std::shared_ptr<TraceAnswers> answers; // replies come from there, and nothing goes over a network
    bool quiet = false; // say nothing but what went wrong
};

[[nodiscard]] int play(const PlayOptions& options);

/// Does again what the trace tells, without a network, and gives 1 when anything comes out otherwise.
[[nodiscard]] int replay(const QString& trace, const QString& plugin);
[[nodiscard]] int shell(const PlayOptions& options);
[[nodiscard]] int doctor(const Places& places);

/// Says where each document stands, and gives 1 unless nothing is lost, doubled, of another value, or a phantom.
[[nodiscard]] int reconcileBooks(const Places& places, const QList<ControlledServer>& servers);

struct QueueOptions {
    Places places;
    QString action; // list, show, send, hold, release or export
    std::optional<qint64> id;
    QString file; // of an export; empty for standard output
};

[[nodiscard]] int queue(const QueueOptions& options);

struct SlipOptions {
    QString file; // or "-" for standard input
    QString format; // text, png or escpos
    QString output; // empty for standard output
    int columns = 42;
};

[[nodiscard]] int slip(const SlipOptions& options);

struct DemoOptions {
    QString sandbox; // the program; empty: beside this one
    QString examples; // the folder of the rules and chapters; empty: as built or installed
    QString output; // where the slips go; empty: a folder of its own under the current one
    QStringList chapters; // none: all
    QString plugin;
    bool showWire = false;
};

[[nodiscard]] int demo(const DemoOptions& options);

} // namespace till
