#include "till/store/store.h"

#include "host/facilities/exceptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QThread>

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

    [[nodiscard]] QString connectionName()
    {
        return QStringLiteral("vantiro-till-%1").arg(reinterpret_cast<quintptr>(QThread::currentThreadId()));
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

    /// Made before the database, so that it never stands readable to others, not for an instant.
    void makeFile(const QString& folder, const QString& file)
    {
        if (!QDir().mkpath(folder)) {
            fail(QStringLiteral("cannot make the folder %1").arg(folder));
        }
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const int descriptor = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (descriptor < 0) {
            fail(QStringLiteral("cannot open the file %1").arg(file));
        }
        ::fchmod(descriptor, 0600);
        ::close(descriptor);
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

    void makeSchema(QSqlDatabase database)
    {
        if (storedVersion(database) > schemaVersion) {
            fail(QStringLiteral("the database was written by a newer till"));
        }
        if (storedVersion(database) == schemaVersion) {
            return;
        }
        run(database, QStringLiteral("BEGIN IMMEDIATE"));
        run(database,
            QStringLiteral("CREATE TABLE IF NOT EXISTS queue ("
                           "id INTEGER PRIMARY KEY AUTOINCREMENT," // never used twice: it is the order of delivery
                           "queue TEXT NOT NULL, message TEXT NOT NULL, extra TEXT NOT NULL,"
                           "state TEXT NOT NULL DEFAULT 'pending', reason TEXT NOT NULL DEFAULT '',"
                           "attempts INTEGER NOT NULL DEFAULT 0, queued_at TEXT NOT NULL)"));
        run(database,
            QStringLiteral("CREATE TABLE IF NOT EXISTS documents ("
                           "identity TEXT PRIMARY KEY, body TEXT NOT NULL, extra TEXT NOT NULL,"
                           "saved_at TEXT NOT NULL)"));
        run(database, QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion));
        run(database, QStringLiteral("COMMIT"));
    }

} // namespace

void open(const QString& folder)
{
    releaseConnection();
    const QString file = QDir(folder).filePath(QStringLiteral("till.sqlite"));
    makeFile(folder, file);
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
        QSqlDatabase database = QSqlDatabase::database(name);
        if (database.databaseName() == file && database.isOpen()) {
            return database;
        }
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    database.setDatabaseName(file);
    if (!database.open()) {
        fail(database.lastError().text());
    }
    setPragmas(database);
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
