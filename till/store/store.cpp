#include "till/store/store.h"

#include "host/facilities/exceptions.h"
#include "till/store/ballast.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>

#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace till::store {

namespace {

    constexpr int schemaVersion = 1;

    [[noreturn]] void fail(const QString& reason)
    {
        tr::Tr text(QStringLiteral("tillStoreFailed"), QStringLiteral("Ошибка базы данных кассы: %1"));
        throw BasicException(text.arg(tr::Tr(reason)));
    }

    /// The classes of the database's own error codes that a person can do something about.
    enum class Cause : int {
        locked = 5,
        readOnly = 8,
        brokenDisk = 10,
        fullDisk = 13,
    };

    [[nodiscard]] Cause causeOf(const QSqlError& error)
    {
        constexpr int classes = 0x100; // the rest of a code tells the place
        return static_cast<Cause>(error.nativeErrorCode().toInt() % classes);
    }

    /// For the cashier: the database speaks English, and of itself.
    [[nodiscard]] QString adviceOn(Cause cause)
    {
        switch (cause) {
        case Cause::locked:
            return QStringLiteral(". База занята другой программой");
        case Cause::readOnly:
            return QStringLiteral(". На диск нельзя писать");
        case Cause::brokenDisk:
            return QStringLiteral(". Диск не читается или не пишется");
        case Cause::fullDisk:
            return QStringLiteral(". На диске нет места");
        }
        return QString();
    }

    [[noreturn]] void fail(const QSqlError& error)
    {
        fail(error.text().simplified() + adviceOn(causeOf(error)));
    }

    struct Location {
        std::mutex mutex;
        QString file; // empty while no store is open
        quint64 opening = 0;
    };

    [[nodiscard]] Location& location()
    {
        static Location instance;
        return instance;
    }

    [[nodiscard]] QString currentFile()
    {
        const std::lock_guard lock(location().mutex);
        return location().file;
    }

    [[nodiscard]] QString folderOf(const QString& file)
    {
        return QFileInfo(file).path();
    }

    /// Threads are counted: the system gives the number of one that has ended to a later one, which may not use what
    /// the former has left.
    [[nodiscard]] QString connectionName()
    {
        static std::atomic<quint64> threads = 0;
        thread_local const quint64 thread = ++threads;
        return QStringLiteral("vantiro-till-%1").arg(thread);
    }

    /// Of the connection of the calling thread.
    [[nodiscard]] std::map<QString, QSqlQuery>& keptStatements()
    {
        thread_local std::map<QString, QSqlQuery> statements;
        return statements;
    }

    /// Makes an entry of the folder itself survive a loss of power; the database syncs its own contents only. A folder
    /// that may not be read, and a file system that cannot synchronise folders, are left at that.
    void syncFolder(const QString& folder)
    {
        const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) {
            return;
        }
        const bool failed = ::fsync(descriptor) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EROFS;
        ::close(descriptor);
        if (failed) {
            fail(QStringLiteral("cannot make the entries of the folder %1 last").arg(folder)
                 + adviceOn(Cause::brokenDisk));
        }
    }

    /// Each folder that is missing is closed to others from its first instant, and its entry is synced in its parent.
    void makeFolder(const QString& folder)
    {
        if (QFileInfo(folder).isDir()) {
            return;
        }
        const QString parent = QFileInfo(folder).absolutePath();
        makeFolder(parent);
        if (::mkdir(QFile::encodeName(folder).constData(), 0700) != 0 && !QFileInfo(folder).isDir()) {
            fail(QStringLiteral("cannot make the folder %1").arg(folder));
        }
        syncFolder(parent);
    }

    /// Made before the database, so that it never stands readable to others, not for an instant. The database gives its
    /// journal the same mode, but takes one that stands already as it is.
    void makeFile(const QString& folder, const QString& file)
    {
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const int descriptor = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (descriptor < 0) {
            fail(QStringLiteral("cannot open the file %1").arg(file));
        }
        const bool closedToOthers = ::fchmod(descriptor, 0600) == 0;
        ::close(descriptor);
        const QByteArray journal = QFile::encodeName(file + QStringLiteral("-journal"));
        if (!closedToOthers || (::chmod(journal.constData(), 0600) != 0 && errno != ENOENT)) {
            fail(QStringLiteral("cannot close the file %1 to others").arg(file));
        }
        syncFolder(folder);
    }

    void run(const QSqlDatabase& database, const QString& statement)
    {
        QSqlQuery query(database);
        if (!query.exec(statement)) {
            fail(query.lastError());
        }
    }

    void setPragmas(const QSqlDatabase& database)
    {
        for (const QString& pragma :
             { QStringLiteral("journal_mode=TRUNCATE"), QStringLiteral("synchronous=FULL"),
               QStringLiteral("secure_delete=ON"), QStringLiteral("busy_timeout=5000") }) {
            run(database, QStringLiteral("PRAGMA ") + pragma);
        }
    }

    [[nodiscard]] QString versionStatement()
    {
        return QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion);
    }

    [[nodiscard]] int storedVersion(const QSqlDatabase& database)
    {
        QSqlQuery query(database);
        if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next()) {
            fail(query.lastError());
        }
        return query.value(0).toInt();
    }

    /// The version is looked at before anything is set: another kind of journal is written into the file.
    void setUp(QSqlDatabase& database)
    {
        if (!database.open()) {
            fail(database.lastError());
        }
        if (storedVersion(database) > schemaVersion) {
            fail(QStringLiteral("the database was written by a newer till"));
        }
        setPragmas(database);
    }

    void makeSchema(const QSqlDatabase& database)
    {
        if (storedVersion(database) == schemaVersion) {
            return;
        }
        run(database, QStringLiteral("BEGIN IMMEDIATE"));
        run(database,
            QStringLiteral("CREATE TABLE IF NOT EXISTS queue ("
                           "id INTEGER PRIMARY KEY AUTOINCREMENT," // never used twice: it is the order of delivery
                           "queue TEXT NOT NULL, message TEXT NOT NULL, extra TEXT NOT NULL,"
                           "state TEXT NOT NULL DEFAULT 'pending', reason TEXT NOT NULL DEFAULT '',"
                           "attempts INTEGER NOT NULL DEFAULT 0, queued_at TEXT NOT NULL,"
                           "not_before TEXT NOT NULL DEFAULT '')"));
        run(database,
            QStringLiteral("CREATE TABLE IF NOT EXISTS documents ("
                           "identity TEXT PRIMARY KEY, body TEXT NOT NULL, extra TEXT NOT NULL,"
                           "saved_at TEXT NOT NULL, state TEXT NOT NULL DEFAULT 'open',"
                           "type INTEGER NOT NULL DEFAULT 0, number INTEGER NOT NULL DEFAULT 0)"));
        run(database, versionStatement());
        run(database, QStringLiteral("COMMIT"));
    }

    /// A transaction that has failed may stand on the disk all the same, and not last: the same values written once
    /// more would then change nothing, and be taken for saved. Something is changed first.
    [[nodiscard]] QSqlError write(QSqlQuery& query)
    {
        static std::atomic<bool> doubtful = false;
        if (doubtful) {
            QSqlQuery touch(connection());
            if (!touch.exec(versionStatement())) {
                return touch.lastError();
            }
        }
        doubtful = !query.exec();
        return doubtful ? query.lastError() : QSqlError();
    }

} // namespace

void open(const QString& folder)
{
    close(); // when the move fails, nothing may go on to where it is no longer looked for
    if (folder.isEmpty()) {
        fail(QStringLiteral("no folder is named"));
    }
    const QString place = QDir::cleanPath(QDir(folder).absolutePath());
    const QString file = QDir(place).filePath(QStringLiteral("till.sqlite"));
    makeFolder(place);
    makeFile(place, file);
    {
        const std::lock_guard lock(location().mutex);
        location().file = file;
        ++location().opening;
    }
    try {
        makeSchema(connection());
        static_cast<void>(keepBallast(place)); // whoever begins something asks again
    } catch (const BasicException&) {
        close();
        throw;
    }
}

void close()
{
    releaseConnection();
    const std::lock_guard lock(location().mutex);
    location().file.clear();
}

quint64 opening()
{
    const std::lock_guard lock(location().mutex);
    return location().opening;
}

QSqlDatabase connection()
{
    const QString file = currentFile();
    if (file.isEmpty()) {
        fail(QStringLiteral("no store is open"));
    }
    const QString name = connectionName();
    if (QSqlDatabase::contains(name)) {
        const QSqlDatabase standing = QSqlDatabase::database(name, false);
        if (standing.databaseName() == file && standing.isOpen()) {
            return standing;
        }
    }
    releaseConnection();
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    database.setDatabaseName(file);
    try {
        setUp(database);
    } catch (const BasicException&) {
        database = QSqlDatabase();
        releaseConnection(); // or the next call would take it as it stands, half set up
        throw;
    }
    return database;
}

void releaseConnection()
{
    keptStatements().clear();
    const QString name = connectionName();
    if (QSqlDatabase::contains(name)) {
        QSqlDatabase::database(name, false).close();
        QSqlDatabase::removeDatabase(name);
    }
}

QSqlQuery prepare(const QString& statement)
{
    QSqlQuery query(connection());
    if (!query.prepare(statement)) {
        fail(query.lastError());
    }
    return query;
}

QSqlQuery& prepareOnce(const QString& statement)
{
    static_cast<void>(connection()); // lets go of what belongs to another one
    const auto found = keptStatements().find(statement);
    return found != keptStatements().end() ? found->second
                                           : keptStatements().emplace(statement, prepare(statement)).first->second;
}

bool nextRow(QSqlQuery& query)
{
    if (query.next()) {
        return true;
    }
    if (query.lastError().isValid()) {
        fail(query.lastError());
    }
    return false;
}

void execute(QSqlQuery& query)
{
    if (!query.exec()) {
        fail(query.lastError());
    }
}

void executeEnding(QSqlQuery& query)
{
    const QString folder = folderOf(currentFile());
    QSqlError error = write(query);
    if (error.isValid() && causeOf(error) == Cause::fullDisk) {
        giveUpBallast(folder);
        error = write(query);
    }
    if (error.isValid()) {
        fail(error);
    }
    static_cast<void>(keepBallast(folder));
}

void requireRoom()
{
    if (const QString file = currentFile(); !file.isEmpty() && !keepBallast(folderOf(file))) {
        fail(QStringLiteral("на диске нет места для нового чека"));
    }
}

} // namespace till::store
