#include "till/program/folder_lock.h"

#include "till/program/surroundings.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace till {

namespace {

    constexpr qsizetype hintSize = 16;

    /// Who holds it, as he has written it; empty when he could not, as on a full disk.
    [[nodiscard]] QString holderOf(int file)
    {
        QByteArray text(hintSize, '\0');
        const ssize_t size = ::pread(file, text.data(), static_cast<size_t>(text.size()), 0);
        return size > 0 ? QStringLiteral(" (process %1)").arg(QString::fromLatin1(text.first(size)).trimmed())
                        : QString();
    }

} // namespace

// Not QLockFile: that one leaves its file behind a killed till and has to guess, and needs room on the disk.
FolderLock::FolderLock(const QString& folder)
    : file(::open(QFile::encodeName(QDir(folder).filePath(QStringLiteral("till.lock"))).constData(),
                  O_RDWR | O_CREAT | O_CLOEXEC, 0600))
{
    if (file < 0) {
        throw CommandError(QStringLiteral("the data folder %1 cannot be used (%2); name another with --data DIR")
                               .arg(folder, QString::fromLocal8Bit(std::strerror(errno))));
    }
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        const QString holder = holderOf(file);
        ::close(file);
        throw CommandError(
            QStringLiteral("a till is already running on %1%2; end it first, or name another folder with --data DIR")
                .arg(folder, holder));
    }
    // Over what another has written; where the disk is full, his number stays, which is only a hint for a person.
    const QByteArray own = QByteArray::number(::getpid()).leftJustified(hintSize);
    [[maybe_unused]] const ssize_t written = ::pwrite(file, own.constData(), static_cast<size_t>(own.size()), 0);
}

FolderLock::~FolderLock()
{
    ::close(file);
}

} // namespace till
