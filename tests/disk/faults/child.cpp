#include "host/facilities/exceptions.h"
#include "tests/disk/faults/failing_disk.h"
#include "tests/disk/faults/telling.h"
#include "tests/disk/faults/till_life.h"
#include "till/store/store.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHashSeed>
#include <QMap>
#include <QPluginLoader>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>

// Works stories on disks that fail, and tells of it; the test judges. The argument is the plug-in; each line of the
// input is a job, its words parted by tabs. A job is done in a process of its own, which may die.
//
//     FOLDER work STORY                                       nothing fails
//     FOLDER work-until STORY COUNT                           so many steps only
//     FOLDER work STORY writes|syncs NUMBER ERROR once|lasts  the process dies of it
//     … repeat                                                the step is repeated, and the story goes on
//     FOLDER full STORY STEP                                  from this step on the disk is full
//     FOLDER closed STORY STEP                                from this step on the disk takes nothing
//     FOLDER start writes|syncs NUMBER ERROR once|lasts       the store is opened while that fails
//     FOLDER go-on                                            what a till does after its start
//     … but-DEFECT                                            the till has the defect

using namespace Qt::StringLiterals;

namespace {

[[nodiscard]] Defect takeDefect(QStringList& words)
{
    static const QMap<QString, Defect> defects {
        { u"but-swallows"_s, Defect::swallows },           { u"but-says-it-in-english"_s, Defect::saysItInEnglish },
        { u"but-has-no-journal"_s, Defect::hasNoJournal }, { u"but-repeats-twice"_s, Defect::repeatsTwice },
        { u"but-has-no-ballast"_s, Defect::hasNoBallast },
    };
    return words.constLast().startsWith(u"but-"_s) ? defects[words.takeLast()] : Defect::none;
}

[[nodiscard]] DiskFault faultFrom(const QStringList& words)
{
    DiskFault fault;
    fault.of = words.value(0) == u"syncs" ? DiskFault::Of::syncs : DiskFault::Of::writes;
    fault.number = words.value(1).toInt();
    fault.error = words.value(2) == u"ENOSPC" ? ENOSPC : EIO;
    fault.lasts = words.value(3) == u"lasts";
    return fault;
}

void start(FailingDisk& disk, const QString& folder, const QStringList& words)
{
    QJsonObject fact { { u"step"_s, u"start"_s }, { u"end"_s, u"done"_s } };
    disk.fail(faultFrom(words));
    try {
        till::store::open(folder);
    } catch (const BasicException& failure) {
        fact.insert(u"end"_s, u"failed"_s);
        fact.insert(u"line"_s, failure.tr().ru());
    }
    tell(fact);
    tell({ { u"failures"_s, disk.failures() } });
}

/// Gives the exit status.
[[nodiscard]] int live(const QString& plugin, QStringList words)
{
    const Defect defect = takeDefect(words);
    const QString folder = words.value(0);
    const QString job = words.value(1);
    FailingDisk disk(QFileInfo(folder).path().toStdString());
    if (job == u"start") {
        start(disk, folder, words.sliced(2));
        return 0;
    }
    TillLife life(plugin, folder, disk, defect);
    const QString argument = words.value(2);
    if (job == u"work") {
        if (words.size() > 3) {
            disk.fail(faultFrom(words.sliced(3)));
        }
        life.work(argument, words.contains(u"repeat"_s));
    } else if (job == u"work-until") {
        life.workUntil(argument, words.value(3).toInt());
    } else if (job == u"full") {
        life.workOnFullDisk(argument, words.value(3).toInt());
    } else if (job == u"closed") {
        life.workOnClosedDisk(argument, words.value(3).toInt());
    } else if (job == u"go-on") {
        life.goOn();
    } else {
        std::fputs("no such job\n", stderr);
        return 2;
    }
    return 0;
}

[[nodiscard]] int liveOrTell(const QString& plugin, const QStringList& words)
try {
    constexpr unsigned int longest = 60; // seconds; then the system ends it
    ::alarm(longest);
    return live(plugin, words);
} catch (const BasicException& failure) {
    std::fprintf(stderr, "%s\n", qPrintable(failure.tr().ru()));
    return 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    QHashSeed::setDeterministicGlobalSeed(); // attributes stand in the same order in every run
    const QCoreApplication application(argc, argv);
    const QString plugin = QCoreApplication::arguments().value(1);
    QPluginLoader(plugin).load(); // no life has to wait for the linking
    for (std::string line; std::getline(std::cin, line);) {
        const pid_t life = ::fork();
        if (life == 0) {
            ::_exit(liveOrTell(plugin, QString::fromStdString(line).split(u'\t')));
        }
        int status = -1;
        if (life < 0 || ::waitpid(life, &status, 0) != life) {
            return 1;
        }
        tell({ { u"exit"_s, WIFEXITED(status) ? WEXITSTATUS(status) : 128 } });
    }
    return 0;
}
