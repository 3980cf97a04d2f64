#pragma once
// The interface between the data-access objects and a database engine.
// Connection and Recordset keep ADO's semantics; a provider only runs
// statements, opens queries and writes single rows. Providers: SQLite
// (platform/ado/sqlite), ODBC (platform/ado/odbc, when built in) and the
// scripted provider for tests (platform/ado/scripted).
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/ado/ado.h"
#include "platform/automation/variant.h"

namespace ado {

// One diagnostic record of a failed provider call.
struct Diagnostic {
    int32_t nativeError = 0;   // the engine's own error number
    std::string sqlState;      // five-character state, "HY000" when the engine has none
    std::string message;
};

// A failed provider call: one or more diagnostic records. Connection turns
// it into Errors entries and raises a BasicError with the first message.
class ProviderError : public std::runtime_error {
public:
    ProviderError(std::string source, std::vector<Diagnostic> diagnostics,
                  int32_t number = adErrCommandFailed);
    // A failure with a single record.
    ProviderError(std::string source, int32_t nativeError, std::string message,
                  int32_t number = adErrCommandFailed, std::string sqlState = "HY000");

    const std::string& Source() const { return source_; }
    const std::vector<Diagnostic>& Diagnostics() const { return diagnostics_; }
    // The ADO-level number the caller sees (Err.Number).
    int32_t Number() const { return number_; }

private:
    std::string source_;
    std::vector<Diagnostic> diagnostics_;
    int32_t number_;
};

// Identity of a row in its base table. SQLite: the rowid. Providers that
// identify rows by key or original values get those from UpdateRow's
// original row and may ignore it.
using RowKey = int64_t;

struct QueryOptions {
    // false: a forward-only stream read as the recordset moves; true: the
    // recordset reads every row once when it opens.
    bool readAll = false;
    // The recordset may write rows: the cursor should find the query's base
    // table and row identities (a cursor that cannot stays read-only).
    bool editable = false;
};

// An open query. Rows come in order through Fetch; row writes go to the
// base table at once.
class Cursor {
public:
    virtual ~Cursor() = default;

    virtual const std::vector<std::string>& Columns() const = 0;
    // Reads the next row into row (resized to the column count) and its
    // identity into key. Returns false after the last row.
    virtual bool Fetch(std::vector<automation::Variant>& row, RowKey& key) = 0;
    // Runs the query again from its first row.
    virtual void Restart() = 0;
    // Whether running the query again is cheap and gives the same rows while
    // nothing changed them: a client-side recordset may then read its first
    // row only and the rest when it needs them.
    virtual bool RereadsCheaply() const { return false; }

    // The table that row writes go to; empty when the query is not
    // editable (several tables, computed columns, opened read-only).
    virtual const std::string& BaseTable() const = 0;
    // Inserts a row in which the given columns (indexes into Columns()) have
    // these values and the others their defaults; returns its identity.
    virtual RowKey InsertRow(const std::vector<int>& columns,
                             const std::vector<automation::Variant>& values) = 0;
    // Writes the given columns of a row read earlier (or inserted). original
    // is the whole row as it was read or last written.
    virtual void UpdateRow(RowKey key, const std::vector<automation::Variant>& original,
                           const std::vector<int>& columns,
                           const std::vector<automation::Variant>& values) = 0;
};

class Provider {
public:
    virtual ~Provider() = default;

    // The text of ADO's Provider property.
    virtual std::string Name() const = 0;
    // Runs a statement (or several, separated by semicolons); raises
    // ProviderError.
    virtual void Execute(const std::string& sql) = 0;
    // Opens a query; raises ProviderError.
    virtual std::unique_ptr<Cursor> OpenQuery(const std::string& sql, const QueryOptions& options) = 0;

    // Without an outer transaction: a transaction of the caller's. Inside
    // one: a savepoint within it, so that the caller's BeginTrans,
    // CommitTrans and RollbackTrans keep their effect on what they enclose.
    virtual void BeginTrans() = 0;
    virtual void CommitTrans() = 0;
    virtual void RollbackTrans() = 0;

    // A transaction around a whole unit of work, which the work inside does
    // not see: an interruption (a signal, a kill, a crash, a lost
    // connection) takes the unit back whole, while a statement that fails
    // inside it takes back only its own effect, as it would without it.
    virtual void BeginOuterTransaction() = 0;
    // A failed commit takes the unit back and raises.
    virtual void CommitOuterTransaction() = 0;
    virtual void RollbackOuterTransaction() = 0;

    // Helper indices: indices a provider may make by itself where
    // statements of one shape keep scanning a large table, under a
    // reserved name, and drop before any change to their table's
    // definition (SQLite: sqlite/helper_indexes.h). Off until asked for;
    // a provider without them does nothing.
    virtual void UseHelperIndexes(bool /*use*/) {}
    // Drops every helper index in the database, this process's and any an
    // interrupted one left, committed at once unless a transaction is open;
    // answers how many there were.
    virtual int DropHelperIndexes() { return 0; }
    virtual int CountHelperIndexes() { return 0; }

    // The one call that may come from another thread, while the owner is
    // anywhere, even inside a call: the process is about to end. Stops the
    // running statement, takes back the open transaction and keeps the
    // connection from doing anything more. True when work was taken back
    // (or will be, by a server when the connection drops).
    virtual bool Abandon() = 0;
};

// The provider a connection string names, as Connection::Open makes it;
// raises what opening raises.
std::unique_ptr<Provider> OpenProvider(const std::string& connectionString);

// Made by the ODBC provider when it is built in (KDVQ_HAVE_ODBC); the text
// is an ODBC connection string.
std::unique_ptr<Provider> OpenOdbcProvider(const std::string& connectionString);

}  // namespace ado
