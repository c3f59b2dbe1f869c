#include "till/store/store.h"

#include "host/facilities/exceptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>

#include <atomic>
#include <cerrno>
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

    struct Location {
        std::mutex mutex;
        QString file; // empty while no store is open
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

    /// Threads are counted: the system gives the number of one that has ended to a later one, which may not use what
    /// the former has left.
    [[nodiscard]] QString connectionName()
    {
        static std::atomic<quint64> threads = 0;
        thread_local const quint64 thread = ++threads;
        return QStringLiteral("vantiro-till-%1").arg(thread);
    }

    /// Makes an entry of the folder itself survive a loss of power; the database syncs its own contents only.
    void syncFolder(const QString& folder)
    {
        const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor >= 0) {
            ::fsync(descriptor);
            ::close(descriptor);
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
            fail(query.lastError().text());
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

    [[nodiscard]] int storedVersion(const QSqlDatabase& database)
    {
        QSqlQuery query(database);
        if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next()) {
            fail(query.lastError().text());
        }
        return query.value(0).toInt();
    }

    /// The version is looked at before anything is set: another kind of journal is written into the file.
    void setUp(QSqlDatabase& database)
    {
        if (!database.open()) {
            fail(database.lastError().text());
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
        run(database, QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion));
        run(database, QStringLiteral("COMMIT"));
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
    }
    try {
        makeSchema(connection());
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
        fail(query.lastError().text());
    }
    return query;
}

void execute(QSqlQuery& query)
{
    if (!query.exec()) {
        fail(query.lastError().text());
    }
}

} // namespace till::store
