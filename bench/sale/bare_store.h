#pragma once

#include "bench/sale/recording.h"

#include <QTemporaryDir>

#include <sqlite3.h>

#include <memory>
#include <string>

/// What a commit costs at the least: SQLite as it comes, a statement prepared once, one commit a row, and everything on
/// which durability hangs as the till's store has it: the kind of journal, the full synchronisation, the wiping of what
/// is deleted.
class BareStore {
public:
    /// In a folder of its own beside those of the shops. Throws `std::runtime_error`.
    BareStore();

    /// Writes the row under the identity, over what stood there. [blocks: until it is on disk]
    void commit(const std::string& identity, const CommittedRow& row);

private:
    void run(const char* statement);

    QTemporaryDir folder;
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database;
    std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement;
};
