#pragma once

namespace sandbox {

class Database;

/// Makes the tables in a new database and checks that an existing one is this program's. Throws `DatabaseFailure`,
/// having changed nothing. [blocks: for the disk]
void prepareSchema(Database& database);

}
