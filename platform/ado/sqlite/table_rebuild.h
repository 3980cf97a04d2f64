#pragma once
// SQL Server's ALTER COLUMN, ADD PRIMARY KEY and table-qualified DROP INDEX
// carried out on SQLite. The first two rebuild the table as SQLite's
// documentation prescribes for schema changes it cannot make in place: a
// new table with the changed definition, the rows copied (rowids kept), the
// old table dropped, the new one renamed, its indexes and triggers made
// again, all inside one savepoint. They fail where SQL Server fails: a
// column made NOT NULL while a row holds Null in it, a second primary key,
// duplicate or Null key values.
#include <sqlite3.h>

#include "platform/ado/sqlite/sql_rewrite.h"

namespace ado::sqlite {

void AlterColumn(sqlite3* db, const sql::AlterColumn& alter);
void AddPrimaryKey(sqlite3* db, const sql::AddPrimaryKey& key);
// Drops the index when it belongs to the table (SQLite's index names are
// unique in the database, SQL Server's only per table).
void DropIndex(sqlite3* db, const sql::DropIndex& drop);

}  // namespace ado::sqlite
