#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace sandbox {

class DatabaseFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One connection to the state. Used by one thread at a time. Everything throws `DatabaseFailure` with the database's
/// reason; waiting for another process ends with one after ten seconds.
class Database {
public:
    /// Opens the file, and makes it and its tables where they are missing; an empty path is a database in memory. A
    /// file that is something else, or was written by a newer version, is refused and left as it is. [blocks: for the
    /// disk]
    explicit Database(const std::filesystem::path& file);

    void run(const char* statement);
    [[nodiscard]] std::int64_t lastId() const;
    [[nodiscard]] sqlite3* handle() const
    {
        return connection.get();
    }

private:
    struct Close {
        void operator()(sqlite3* open) const;
    };
    std::unique_ptr<sqlite3, Close> connection;
};

/// A prepared statement; parameters are bound in the order of the calls. Text is given out as UTF-8.
class Statement {
public:
    Statement(const Database& owner, std::string_view text);

    Statement& bind(std::int64_t value);
    Statement& bind(std::string_view value);
    Statement& bindOptional(const std::optional<std::string>& value); // absent is NULL

    /// Whether there is a row (again).
    [[nodiscard]] bool step();
    /// For statements without rows.
    void run();

    [[nodiscard]] std::int64_t integer(int column) const; // NULL is 0
    [[nodiscard]] std::string text(int column) const; // NULL is empty
    [[nodiscard]] bool isNull(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* prepared) const;
    };
    const Database& database;
    std::unique_ptr<sqlite3_stmt, Finalize> statement;
    int bound = 0;
};

/// BEGIN IMMEDIATE: the state belongs to this process until the end, so that what is read stays true until it is
/// written. Rolled back unless `commit` was called and returned. [blocks: for other processes, and at commit for the
/// disk]
class Transaction {
public:
    explicit Transaction(Database& owner);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Database& database;
    bool isOpen = true;
};

}
