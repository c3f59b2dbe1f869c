#include "sandbox/database.h"

#include "sandbox/schema.h"

#include <sqlite3.h>

namespace sandbox {

namespace {

constexpr int waitForOthers = 10'000; // ms

[[noreturn]] void fail(sqlite3* connection)
{
    throw DatabaseFailure(connection == nullptr ? "out of memory" : sqlite3_errmsg(connection));
}

}

Database::Database(const std::filesystem::path& file)
{
    sqlite3* opened = nullptr;
    const std::string name = file.empty() ? ":memory:" : file.string();
    const int result = sqlite3_open_v2(name.c_str(), &opened,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    connection.reset(opened);
    if (result != SQLITE_OK) {
        fail(opened);
    }
    sqlite3_busy_timeout(opened, waitForOthers);
    prepareSchema(*this);
}

void Database::run(const char* statement)
{
    if (sqlite3_exec(handle(), statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail(handle());
    }
}

std::int64_t Database::lastId() const
{
    return sqlite3_last_insert_rowid(handle());
}

void Database::Close::operator()(sqlite3* open) const
{
    sqlite3_close_v2(open);
}

Statement::Statement(const Database& owner, std::string_view text)
    : database(owner)
{
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database.handle(), text.data(), static_cast<int>(text.size()), &prepared, nullptr)
        != SQLITE_OK) {
        fail(database.handle());
    }
    statement.reset(prepared);
}

Statement& Statement::bind(std::int64_t value)
{
    if (sqlite3_bind_int64(statement.get(), ++bound, value) != SQLITE_OK) {
        fail(database.handle());
    }
    return *this;
}

Statement& Statement::bind(std::string_view value)
{
    const char* const data = value.data() == nullptr ? "" : value.data(); // a null pointer would be bound as NULL
    if (sqlite3_bind_text64(statement.get(), ++bound, data, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8) != SQLITE_OK) {
        fail(database.handle());
    }
    return *this;
}

Statement& Statement::bindOptional(const std::optional<std::string>& value)
{
    if (value) {
        return bind(std::string_view(*value));
    }
    if (sqlite3_bind_null(statement.get(), ++bound) != SQLITE_OK) {
        fail(database.handle());
    }
    return *this;
}

bool Statement::step()
{
    const int result = sqlite3_step(statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        fail(database.handle());
    }
    return result == SQLITE_ROW;
}

void Statement::run()
{
    static_cast<void>(step());
}

std::int64_t Statement::integer(int column) const
{
    return sqlite3_column_int64(statement.get(), column);
}

std::string Statement::text(int column) const
{
    const unsigned char* const data = sqlite3_column_text(statement.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column));
    return data == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(statement.get(), column) == SQLITE_NULL;
}

void Statement::Finalize::operator()(sqlite3_stmt* prepared) const
{
    sqlite3_finalize(prepared);
}

Transaction::Transaction(Database& owner)
    : database(owner)
{
    database.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (isOpen) {
        sqlite3_exec(database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void Transaction::commit()
{
    database.run("COMMIT");
    isOpen = false;
}

}
