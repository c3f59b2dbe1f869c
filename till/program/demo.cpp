#include "till/program/commands.h"
#include "till/program/player_session.h"
#include "till/program/sandbox_process.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

#include <unistd.h>

namespace till {

namespace {

    /// The folder of this very program; there is no application object before the fork.
    [[nodiscard]] QDir programFolder()
    {
        return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).dir();
    }

    /// The first of the places that exists.
    [[nodiscard]] QString found(const QString& given, const QStringList& places)
    {
        if (!given.isEmpty()) {
            return QFileInfo(given).absoluteFilePath();
        }
        const QDir folder = programFolder();
        for (const QString& place : places) {
            if (QFileInfo::exists(folder.filePath(place))) {
                return QFileInfo(folder.filePath(place)).canonicalFilePath();
            }
        }
        return places.constFirst();
    }

    [[nodiscard]] QString newFolder(const QString& wanted)
    {
        const QString name = wanted.isEmpty()
            ? QStringLiteral("vantiro-demo-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"))
            : wanted;
        // Nothing that is already there is touched.
        if (QFileInfo::exists(name) || !QDir().mkpath(name)) {
            throw CommandError(QStringLiteral("the folder %1 cannot be made, or is there already; name a new one with "
                                              "--output DIR")
                                   .arg(name));
        }
        // Databases and slips tell who has bought what.
        if (!QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
            throw CommandError(QStringLiteral("the folder %1 cannot be closed to others").arg(name));
        }
        return QFileInfo(name).canonicalFilePath();
    }

    void writeConfiguration(const QString& file, const QList<ControlledServer>& servers, const QString& slips)
    {
        QStringList hosts;
        for (const ControlledServer& server : servers) {
            hosts.append(server.service.toString());
        }
        const QString text = QStringLiteral("[Vantiro]\nhosts=%1\ntimeout=2\nuser=till\npassword=secret\n"
                                            "checkCouponPrefix=vantiro-\npositionCouponPrefix=line-\n"
                                            "\n[Till]\nshift=1\nslips=%2\n")
                                 .arg(hosts.join(u','), slips);
        QFile ini(file);
        if (!ini.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner)
            || ini.write(text.toUtf8()) < 0) {
            throw CommandError(QStringLiteral("%1 cannot be written: %2").arg(file, ini.errorString()));
        }
    }

    [[nodiscard]] QStringList chapterFiles(const QString& examples, const QStringList& wanted)
    {
        const QDir folder(examples);
        QStringList files;
        for (const QString& chapter : wanted) {
            const QString name = chapter.endsWith(u".till") ? chapter : chapter + QStringLiteral(".till");
            if (!folder.exists(name)) {
                throw CommandError(QStringLiteral("there is no chapter %1 in %2").arg(chapter, examples));
            }
            files.append(folder.filePath(name));
        }
        if (wanted.isEmpty()) {
            for (const QString& name : folder.entryList({ QStringLiteral("*.till") }, QDir::Files, QDir::Name)) {
                files.append(folder.filePath(name));
            }
        }
        if (files.isEmpty()) {
            throw CommandError(
                QStringLiteral("there are no chapters in %1; name the folder with --examples DIR").arg(examples));
        }
        return files;
    }

} // namespace

int demo(const DemoOptions& options)
{
    const QString sandbox = found(
        options.sandbox, { QStringLiteral("../../sandbox/vantiro-sandbox"), QStringLiteral("vantiro-sandbox") });
    const QString examples
        = found(options.examples,
                { QStringLiteral("../../../../examples"), QStringLiteral("../share/doc/vantiro-till/examples") });
    const QStringList chapters = chapterFiles(examples, options.chapters);
    const QString output = newFolder(options.output);
    const QDir folder(output);
    folder.mkdir(QStringLiteral("slips"));

    const auto arguments = [&](const QString& name) {
        return QStringList { QStringLiteral("--rules"), QDir(examples).filePath(QStringLiteral("rules.yaml")),
                             QStringLiteral("--state"), folder.filePath(QStringLiteral("service.sqlite")),
                             QStringLiteral("--name"), name };
    };
    // Two ends of one service: what one has booked, the other knows.
    const std::array<SandboxProcess, 2> services {
        SandboxProcess(sandbox, arguments(QStringLiteral("first")), QStringLiteral("first"),
                       folder.filePath(QStringLiteral("first.log"))),
        SandboxProcess(sandbox, arguments(QStringLiteral("second")), QStringLiteral("second"),
                       folder.filePath(QStringLiteral("second.log"))),
    };

    PlayOptions playing;
    playing.showWire = options.showWire;
    playing.places.plugin = options.plugin;
    playing.places.data = folder.filePath(QStringLiteral("till"));
    playing.places.config = folder.filePath(QStringLiteral("vantiro-till.ini"));
    for (const SandboxProcess& service : services) {
        playing.servers.append(service.server());
        writeLine(QStringLiteral("Loyalty service \"%1\" at %2")
                      .arg(service.server().name, service.server().service.toString()));
    }
    writeConfiguration(playing.places.config, playing.servers, folder.filePath(QStringLiteral("slips")));

    for (const QString& chapter : chapters) {
        playing.script = chapter;
        if (const int status = play(playing); status != 0) {
            writeLine(QStringLiteral("\nThe story has gone wrong; databases and logs are in %1").arg(output));
            return status;
        }
    }
    writeLine(QStringLiteral("\nThe slips as pictures: %1").arg(folder.filePath(QStringLiteral("slips"))));
    return 0;
}

} // namespace till
