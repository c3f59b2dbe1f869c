#include "till/store/ballast.h"

#include <QDir>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace till::store {

namespace {

    [[nodiscard]] QByteArray nameIn(const QString& folder)
    {
        return QFile::encodeName(QDir(folder).filePath(QStringLiteral("till.ballast")));
    }

    /// Its size alone does not tell: after a loss of power it may be a hole.
    [[nodiscard]] bool stands(const QByteArray& name)
    {
        constexpr qint64 blockSize = 512;
        struct stat status { };
        return ::stat(name.constData(), &status) == 0 && status.st_size == ballastSize
            && status.st_blocks * blockSize >= ballastSize;
    }

    /// With as much again to spare: a disk that the ballast itself fills up is of no use to anybody.
    [[nodiscard]] bool hasRoom(const QString& folder)
    {
        struct statvfs status { };
        return ::statvfs(QFile::encodeName(folder).constData(), &status) != 0
            || static_cast<double>(status.f_bavail) * static_cast<double>(status.f_frsize)
            >= 2.0 * static_cast<double>(ballastSize);
    }

} // namespace

bool keepBallast(const QString& folder)
{
    const QByteArray name = nameIn(folder);
    if (stands(name)) {
        return true;
    }
    if (!hasRoom(folder)) {
        return false;
    }
    const int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        return errno != ENOSPC && errno != EDQUOT;
    }
    // Not synchronised: what a loss of power takes of it is made again.
    const int error = ::posix_fallocate(descriptor, 0, ballastSize);
    const bool full = error == ENOSPC || error == EDQUOT;
    if (full) {
        static_cast<void>(::ftruncate(descriptor, 0) == 0); // a part of it serves nobody
    }
    ::close(descriptor);
    return !full;
}

void giveUpBallast(const QString& folder)
{
    const int descriptor = ::open(nameIn(folder).constData(), O_RDWR | O_CLOEXEC);
    if (descriptor >= 0) {
        static_cast<void>(::ftruncate(descriptor, 0) == 0); // if not, the repeated write tells
        ::close(descriptor);
    }
}

} // namespace till::store
