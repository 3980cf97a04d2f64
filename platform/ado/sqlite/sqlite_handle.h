#pragma once
// Owned SQLite handles and the provider's failures. A database handle is
// shared by the provider and its open cursors, so that a recordset may
// outlive the connection's close without touching a closed handle.
#include <sqlite3.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ado::sqlite {

class HelperIndexes;  // helper_indexes.h

class Database {
public:
    explicit Database(sqlite3* db);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    sqlite3* Get() const { return db_; }

    // Whether a caller's outer transaction is open. The engine ends a
    // transaction on its own after some failures (a full disk, an I/O
    // error); every write first checks that it has not, so that nothing
    // after that point commits by itself outside the transaction.
    void SetOuterTransaction(bool open) { outer_ = open; }
    bool InOuterTransaction() const { return outer_; }
    void CheckOuterTransaction() const;

    // The indices the provider makes where statements keep scanning.
    HelperIndexes& Helpers() { return *helpers_; }

private:
    sqlite3* db_;
    bool outer_ = false;
    std::unique_ptr<HelperIndexes> helpers_;
};
using DatabasePtr = std::shared_ptr<Database>;

struct StatementDeleter {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

// Raises the connection's last failure as a ProviderError: native error =
// the extended result code, description = the engine's message.
[[noreturn]] void RaiseLast(sqlite3* db);
// Raises a failure found by the provider itself, with an engine code.
[[noreturn]] void Raise(int code, const std::string& message);

// Prepares one statement (raises on failure); *tail, when given, receives
// the offset of the text after it.
Statement Prepare(sqlite3* db, const std::string& sql, size_t offset = 0, size_t* tail = nullptr);
// Steps a statement to its end, discarding rows (raises on failure).
void RunToEnd(sqlite3* db, sqlite3_stmt* statement);
// Runs every statement of the text; ran, when given, is told of each
// statement once it has run to its end.
void ExecuteAll(sqlite3* db, const std::string& sql, const std::function<void(sqlite3_stmt*)>& ran = nullptr);
// Runs a query with text parameters, handing each row to onRow.
void ForEachRow(sqlite3* db, const std::string& query, const std::vector<std::string>& parameters,
                const std::function<void(sqlite3_stmt*)>& onRow);
// A column of the current row as text ("" for Null).
std::string Text(sqlite3_stmt* s, int column);

}  // namespace ado::sqlite
