#include "till/program/doctor_data.h"

#include "host/facilities/exceptions.h"
#include "till/program/doctor_store.h"
#include "till/store/store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace till::diagnosis {

namespace {

constexpr QFile::Permissions ofOthers
    = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

[[nodiscard]] bool isOpenToOthers(const QString& path)
{
    return (QFileInfo(path).permissions() & ofOthers) != QFile::Permissions();
}

[[nodiscard]] bool isWritableFolder(const QString& path)
{
    return QFileInfo(path).isDir() && ::access(QFile::encodeName(path).constData(), W_OK | X_OK) == 0;
}

/// The first of the folder and those above it that is there.
[[nodiscard]] QString standingAbove(const QString& folder)
{
    QString path = QFileInfo(folder).absoluteFilePath();
    while (!QFileInfo::exists(path) && path != QFileInfo(path).absolutePath()) {
        path = QFileInfo(path).absolutePath();
    }
    return path;
}

[[nodiscard]] Finding checkMissingFolder(const QString& folder)
{
    const QString above = standingAbove(folder);
    return isWritableFolder(above)
        ? ok(QStringLiteral("The data folder %1 is not there yet; the till makes it when it starts.").arg(folder))
        : failed(
            QStringLiteral(
                "The data folder %1 cannot be made, as nothing can be written in %2; name another with --data DIR.")
                .arg(folder, above));
}

/// The till closes what it opens; whether it was open is known only before, and whether it could be closed only after.
struct Openness {
    QString path;
    QString mode; // that closes it
    bool before = false;
};

[[nodiscard]] Findings checkOpenness(const QList<Openness>& places)
{
    Findings findings;
    for (const Openness& place : places) {
        if (isOpenToOthers(place.path)) {
            findings.append(
                failed(QStringLiteral("Others can look into %1, which may hold credentials; close it with chmod %2.")
                           .arg(place.path, place.mode)));
        } else if (place.before) {
            findings.append(warning(
                QStringLiteral("Others could look into %1, which may hold credentials, and it was closed to them "
                               "now; change the password if others use this machine.")
                    .arg(place.path)));
        }
    }
    return findings;
}

[[nodiscard]] Findings checkDatabase(const QString& folder)
{
    const QString file = QDir(folder).filePath(QStringLiteral("till.sqlite"));
    if (!QFileInfo::exists(file)) {
        return { ok(QStringLiteral("The database is not there yet; the till makes it when it starts.")) };
    }
    const QList<Openness> places { { folder, QStringLiteral("700"), isOpenToOthers(folder) },
                                   { file, QStringLiteral("600"), isOpenToOthers(file) } };
    Findings findings;
    try {
        store::open(folder);
        findings.append(ok(QStringLiteral("The database opens.")));
        findings += checkStore();
    } catch (const BasicException& failure) {
        findings.append(
            failed(QStringLiteral("The database %1 cannot be used (%2); move it aside, or name another folder with "
                                  "--data DIR.")
                       .arg(file, failure.tr().ru())));
    }
    store::close();
    return findings + checkOpenness(places);
}

/// Without writing anything: a till that runs has the log to itself.
[[nodiscard]] Finding checkLog(const QString& folder)
{
    const QString log = QDir(folder).filePath(QStringLiteral("till.log"));
    int reason = 0;
    if (QFileInfo::exists(log)) {
        const int descriptor = ::open(QFile::encodeName(log).constData(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK);
        reason = descriptor < 0 ? errno : 0;
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    } else if (!isWritableFolder(folder)) {
        reason = EACCES;
    }
    return reason == 0
        ? ok(QStringLiteral("The log %1 can be written.").arg(log))
        : failed(QStringLiteral("The log %1 cannot be written (%2); give this user the right to write it.")
                     .arg(log, QString::fromLocal8Bit(std::strerror(reason))));
}

} // namespace

Finding checkFreeSpace(const QString& folder, qint64 bytes)
{
    constexpr qint64 mebibyte = 1024 * 1024;
    constexpr qint64 scarce = 200 * mebibyte;
    constexpr qint64 full = 10 * mebibyte;
    const QString space
        = QStringLiteral("%1 MiB are free for the data folder %2").arg(QString::number(bytes / mebibyte), folder);
    if (bytes >= scarce) {
        return ok(space + u'.');
    }
    const QString advice = QStringLiteral("%1, and on a full disk no cheque can be kept; make room.").arg(space);
    return bytes >= full ? warning(advice) : failed(advice);
}

Findings checkDataFolder(const QString& folder)
{
    const QFileInfo place(folder);
    if (!place.exists()) {
        return { checkMissingFolder(folder) };
    }
    if (!place.isDir()) {
        return { failed(QStringLiteral("The data folder %1 is no folder; name another with --data DIR.").arg(folder)) };
    }
    Findings findings {
        isWritableFolder(folder)
            ? ok(QStringLiteral("The data folder is %1.").arg(folder))
            : failed(QStringLiteral("Nothing can be written in the data folder %1; give this user the right to, or "
                                    "name another with --data DIR.")
                         .arg(folder))
    };
    findings += checkDatabase(folder);
    std::error_code unknown; // Qt looks for the mount point, which a root of its own need not have
    const std::filesystem::space_info space = std::filesystem::space(QFile::encodeName(folder).constData(), unknown);
    findings.append(checkFreeSpace(folder, static_cast<qint64>(space.available)));
    findings.append(checkLog(folder));
    return findings;
}

} // namespace till::diagnosis
