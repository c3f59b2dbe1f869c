#include "sandbox/schema.h"

#include "sandbox/database.h"

#include <chrono>
#include <string>
#include <thread>

namespace sandbox {

namespace {

constexpr std::int64_t application = 0x56535831; // marks the file as this program's
constexpr std::int64_t version = 1;

// Sums are kopecks, points are hundredths, quantities are thousandths, times of the service are UTC.
//
// The balance of a card is its opening balance and the sum of its entries. It is stored nowhere else, so that there
// is nothing that could disagree with the entries.
constexpr const char* tables = R"(
        -- Tells this state from all others: several programs may work on one.
        CREATE TABLE state (
            id TEXT PRIMARY KEY
        ) WITHOUT ROWID;
        INSERT INTO state VALUES (lower(hex(randomblob(16))));

        CREATE TABLE card (
            number TEXT PRIMARY KEY,
            opening INTEGER NOT NULL
        ) WITHOUT ROWID;

        CREATE TABLE request (
            id INTEGER PRIMARY KEY AUTOINCREMENT,
            time TEXT NOT NULL,
            server TEXT NOT NULL,
            operation TEXT NOT NULL,
            uid TEXT NOT NULL,
            outcome TEXT NOT NULL,
            status INTEGER NOT NULL,
            reason TEXT NOT NULL,
            fault TEXT NOT NULL,
            headers TEXT NOT NULL,
            body TEXT NOT NULL
        );

        CREATE TABLE cheque (
            uid TEXT PRIMARY KEY,
            type TEXT NOT NULL,
            status TEXT NOT NULL,
            number TEXT NOT NULL,
            shift TEXT NOT NULL,
            open_time TEXT NOT NULL,
            close_time TEXT NOT NULL,
            card TEXT,
            amount INTEGER NOT NULL,
            earned INTEGER NOT NULL,
            spent INTEGER NOT NULL,
            sale TEXT,
            note TEXT NOT NULL,
            canonical TEXT NOT NULL,
            result TEXT NOT NULL,
            request INTEGER NOT NULL REFERENCES request (id)
        ) WITHOUT ROWID;
        CREATE INDEX cheque_sale ON cheque (number, open_time);

        CREATE TABLE line (
            uid TEXT NOT NULL REFERENCES cheque (uid),
            number INTEGER NOT NULL,
            item TEXT NOT NULL,
            quantity INTEGER NOT NULL,
            amount INTEGER NOT NULL,
            spent INTEGER NOT NULL,
            earned INTEGER NOT NULL,
            returned INTEGER NOT NULL DEFAULT 0,
            PRIMARY KEY (uid, number)
        ) WITHOUT ROWID;

        CREATE TABLE entry (
            id INTEGER PRIMARY KEY,
            card TEXT NOT NULL REFERENCES card (number),
            uid TEXT NOT NULL,
            kind TEXT NOT NULL,
            points INTEGER NOT NULL,
            request INTEGER NOT NULL REFERENCES request (id)
        );
        CREATE INDEX entry_card ON entry (card);
        CREATE INDEX entry_uid ON entry (uid);
    )";

[[nodiscard]] std::int64_t number(const Database& database, const char* query)
{
    Statement statement(database, query);
    return statement.step() ? statement.integer(0) : 0;
}

/// Changing the journal is the one step for which the database does not wait while another process does the same.
void useWriteAheadLog(Database& database)
{
    using namespace std::chrono_literals;
    for (int attempt = 0;; ++attempt) {
        try {
            database.run("PRAGMA journal_mode = WAL");
            return;
        } catch (const DatabaseFailure&) {
            if (attempt == 100) {
                throw;
            }
            std::this_thread::sleep_for(20ms);
        }
    }
}

void makeTables(Database& database)
{
    Transaction transaction(database);
    // Another process may have made them while this one waited for its turn.
    if (number(database, "PRAGMA application_id") != application) {
        database.run(tables);
        database.run(("PRAGMA application_id = " + std::to_string(application)).c_str());
        database.run(("PRAGMA user_version = " + std::to_string(version)).c_str());
    }
    transaction.commit();
}

}

void prepareSchema(Database& database)
{
    const bool isNew = number(database, "SELECT count(*) FROM sqlite_schema") == 0;
    if (!isNew && number(database, "PRAGMA application_id") != application) {
        throw DatabaseFailure("the file is a database of another program");
    }
    if (!isNew && number(database, "PRAGMA user_version") != version) {
        throw DatabaseFailure("the file was written by another version of this program");
    }
    useWriteAheadLog(database);
    // What was answered must outlive a loss of power.
    database.run("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON;");
    if (isNew) {
        makeTables(database);
    }
}

}
