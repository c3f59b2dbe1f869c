#include "tests/disk/power/planted_store.h"

#include "till/store/document_json.h"

#include <QFile>
#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

const QString connection = u"planted"_s;

void synchronise(const QString& folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::fsync(descriptor);
    ::close(descriptor);
}

[[nodiscard]] QString nameOf(till::store::DocumentState state)
{
    constexpr std::array names { "open", "closing", "aside", "closed", "cancelling", "cancelled" };
    return QString::fromLatin1(names.at(static_cast<std::size_t>(state)));
}

} // namespace

const std::vector<Defect>& defects()
{
    static const QStringList right { u"journal_mode=TRUNCATE"_s, u"synchronous=FULL"_s, u"secure_delete=ON"_s };
    static const std::vector<Defect> all {
        { u"none"_s, right },
        { u"synchronous=OFF"_s, { u"journal_mode=TRUNCATE"_s, u"synchronous=OFF"_s } },
        { u"synchronous=NORMAL"_s, { u"journal_mode=TRUNCATE"_s, u"synchronous=NORMAL"_s } },
        { u"WAL, NORMAL"_s, { u"journal_mode=WAL"_s, u"synchronous=NORMAL"_s } },
        { u"DELETE, FULL"_s, { u"journal_mode=DELETE"_s, u"synchronous=FULL"_s } },
        { u"journal in memory"_s, { u"journal_mode=MEMORY"_s, u"synchronous=FULL"_s } },
        { u"no journal"_s, { u"journal_mode=OFF"_s, u"synchronous=FULL"_s } },
        { u"folder not synchronised"_s, right, false },
        { u"answer before commit"_s, right, true, true },
    };
    return all;
}

PlantedStore::PlantedStore(const QString& rootFolder, const QString& storeFolder, const Defect& itsDefect)
    : root(rootFolder)
    , folder(storeFolder)
    , defect(itsDefect)
{
    makeFolders();
    open();
}

PlantedStore::~PlantedStore()
{
    close();
}

void PlantedStore::makeFolders() const
{
    QString place = root;
    for (const QString& part : folder.split(u'/')) {
        ::mkdir(QFile::encodeName(place + u'/' + part).constData(), 0700);
        if (defect.folderSynchronised) {
            synchronise(place);
        }
        place += u'/' + part;
    }
}

void PlantedStore::open()
{
    database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
    database.setDatabaseName(root + u'/' + folder + u"/till.sqlite"_s);
    if (!database.open()) {
        throw std::runtime_error(database.lastError().text().toStdString());
    }
    for (const QString& pragma : defect.pragmas) {
        run(u"PRAGMA "_s + pragma);
    }
    run(u"BEGIN"_s);
    run(u"CREATE TABLE IF NOT EXISTS queue (id INTEGER PRIMARY KEY AUTOINCREMENT, queue TEXT NOT NULL, message TEXT "
        u"NOT "
        "NULL, extra TEXT NOT NULL, state TEXT NOT NULL DEFAULT 'pending', reason TEXT NOT NULL DEFAULT '', attempts "
        "INTEGER NOT NULL DEFAULT 0, queued_at TEXT NOT NULL, not_before TEXT NOT NULL DEFAULT '')"_s);
    run(u"CREATE TABLE IF NOT EXISTS documents (identity TEXT PRIMARY KEY, body TEXT NOT NULL, extra TEXT NOT NULL, "
        "saved_at TEXT NOT NULL, state TEXT NOT NULL DEFAULT 'open', type INTEGER NOT NULL DEFAULT 0, number INTEGER "
        "NOT "
        "NULL DEFAULT 0)"_s);
    run(u"PRAGMA user_version=1"_s);
    run(u"COMMIT"_s);
}

void PlantedStore::close()
{
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

void PlantedStore::run(const QString& statement, const QVariantList& values) const
{
    QSqlQuery query(database);
    bool done = query.prepare(statement);
    for (const QVariant& value : values) {
        query.addBindValue(value);
    }
    if (!done || !query.exec()) {
        throw std::runtime_error(query.lastError().text().toStdString());
    }
}

void PlantedStore::store(const Command& command) const
{
    const QString update = u"UPDATE queue SET state = ?, attempts = ?, reason = ? WHERE id = ?"_s;
    switch (command.kind) {
    case Command::Kind::enqueue:
        run(u"INSERT INTO queue (queue, message, extra, queued_at) VALUES ('vantiro', ?, '', '')"_s,
            { QString::fromUtf8(QJsonDocument(storyMessage(command.number)).toJson(QJsonDocument::Compact)) });
        break;
    case Command::Kind::save:
        run(u"INSERT OR REPLACE INTO documents (identity, body, extra, saved_at, state, type, number) VALUES (?, ?, "
            u"'', "
            "'', ?, 1, ?)"_s,
            { u"document-%1"_s.arg(command.number),
              QString::fromUtf8(till::toJson(storyDocument(command.number, command.version))), nameOf(command.state),
              command.number });
        break;
    case Command::Kind::deliver:
        run(u"DELETE FROM queue WHERE id = ?"_s, { command.number });
        break;
    case Command::Kind::postpone:
        run(update, { u"pending"_s, 3, u"later"_s, command.number });
        break;
    case Command::Kind::setAside:
        run(update, { u"refused"_s, 4, u"no such card"_s, command.number });
        break;
    case Command::Kind::release:
        run(update, { u"pending"_s, 0, u""_s, command.number });
        break;
    case Command::Kind::reopen:
        break;
    }
}

void PlantedStore::perform(const Command& command, const std::function<void()>& done)
{
    if (command.kind == Command::Kind::reopen) {
        close();
        open();
        done();
        return;
    }
    run(u"BEGIN"_s);
    store(command);
    if (defect.answersEarly) {
        done();
    }
    run(u"COMMIT"_s);
    if (!defect.answersEarly) {
        done();
    }
}
