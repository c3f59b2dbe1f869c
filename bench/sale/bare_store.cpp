#include "bench/sale/bare_store.h"

#include <QFile>

#include <stdexcept>

namespace {

void require(bool done, sqlite3* database)
{
    if (!done) {
        throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(database));
    }
}

[[nodiscard]] sqlite3* opened(const QString& file)
{
    sqlite3* database = nullptr;
    require(sqlite3_open(QFile::encodeName(file).constData(), &database) == SQLITE_OK, database);
    return database;
}

} // namespace

BareStore::BareStore()
    : database(opened(folder.filePath(QStringLiteral("bare.sqlite"))), sqlite3_close)
    , statement(nullptr, sqlite3_finalize)
{
    run("PRAGMA journal_mode=TRUNCATE");
    run("PRAGMA synchronous=FULL");
    run("PRAGMA secure_delete=ON");
    run("CREATE TABLE documents (identity TEXT PRIMARY KEY, body TEXT NOT NULL, extra TEXT NOT NULL,"
        "saved_at TEXT NOT NULL, state TEXT NOT NULL, type INTEGER NOT NULL, number INTEGER NOT NULL)");
    sqlite3_stmt* prepared = nullptr;
    const bool done
        = sqlite3_prepare_v2(database.get(),
                             "INSERT INTO documents VALUES (?, ?, ?, ?, ?, ?, ?) "
                             "ON CONFLICT (identity) DO UPDATE SET body = excluded.body, extra = excluded.extra, "
                             "saved_at = excluded.saved_at, state = excluded.state",
                             -1, &prepared, nullptr)
        == SQLITE_OK;
    statement.reset(prepared);
    require(done, database.get());
}

void BareStore::run(const char* text)
{
    require(sqlite3_exec(database.get(), text, nullptr, nullptr, nullptr) == SQLITE_OK, database.get());
}

void BareStore::commit(const std::string& identity, const CommittedRow& row)
{
    int index = 1;
    sqlite3_bind_text(statement.get(), index, identity.data(), static_cast<int>(identity.size()), SQLITE_STATIC);
    for (const QByteArray* const text : { &row.body, &row.extra, &row.savedAt, &row.state }) {
        sqlite3_bind_text(statement.get(), ++index, text->constData(), static_cast<int>(text->size()), SQLITE_STATIC);
    }
    sqlite3_bind_int(statement.get(), ++index, row.type);
    sqlite3_bind_int(statement.get(), ++index, row.number);
    const bool done = sqlite3_step(statement.get()) == SQLITE_DONE;
    sqlite3_reset(statement.get());
    require(done, database.get());
}
