#pragma once
// Recognises the SQL Server statement forms that SQLite lacks and that the
// upgraders send, so that the provider can carry them out another way:
//   ALTER TABLE t ALTER COLUMN c <type> [[NOT] NULL]
//   ALTER TABLE t ADD PRIMARY KEY (c, ...)
//   DROP INDEX i ON t  |  DROP INDEX t.i  |  DROP INDEX owner.t.i
//   CREATE [UNIQUE] INDEX i ON owner.t(cols)   (the owner is dropped)
// Keywords in any case, one optional trailing semicolon; owner-qualified
// table names keep their last part. Everything else is left as it is.
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ado::sql {

struct NativeStatement {
    std::string sql;  // to run as it is
};
struct AlterColumn {
    std::string table;
    std::string column;
    std::string type;        // the type as written, e.g. "VARCHAR(64)"
    bool notNull = false;    // NOT NULL given (otherwise the column allows Null)
};
struct AddPrimaryKey {
    std::string table;
    std::vector<std::string> columns;
};
struct DropIndex {
    std::string index;
    std::string table;
};

using Statement = std::variant<NativeStatement, AlterColumn, AddPrimaryKey, DropIndex>;

Statement Classify(const std::string& sql);

// The query with the row identity as an extra first column
// ("SELECT x FROM t" -> "SELECT _rowid_, x FROM t"); nullopt when the text
// is no plain SELECT (DISTINCT, compound heads such as WITH or VALUES).
std::optional<std::string> WithRowidColumn(const std::string& select);

}  // namespace ado::sql
