#pragma once
// Data access with ADO's semantics: Connection, Recordset, Field, Errors.
// Methods raise failures as automation::BasicError, as a Basic caller of the
// data-access objects sees them.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/automation/variant.h"
#include "platform/com/unknown.h"

// The C library's EOF macro would turn Recordset::EOF() into "(-1)()". The
// data-access objects take the name, as Basic callers know it; code that
// includes this header and needs the C value uses
// std::char_traits<char>::eof().
#ifdef EOF
#undef EOF
#endif

namespace ado {

using automation::Variant;

enum CursorLocationEnum : int32_t { adUseServer = 2, adUseClient = 3 };
enum CursorTypeEnum : int32_t { adOpenUnspecified = -1, adOpenForwardOnly = 0, adOpenKeyset = 1, adOpenDynamic = 2, adOpenStatic = 3 };
enum LockTypeEnum : int32_t { adLockUnspecified = -1, adLockReadOnly = 1, adLockPessimistic = 2, adLockOptimistic = 3, adLockBatchOptimistic = 4 };
enum SearchDirectionEnum : int32_t { adSearchBackward = -1, adSearchForward = 1 };
enum ObjectStateEnum : int32_t { adStateClosed = 0, adStateOpen = 1 };
constexpr int32_t adOptionUnspecified = -1;

// ADO's error numbers (as Err.Number sees them).
enum AdoErrorNumber : int32_t {
    adErrProviderFailed = static_cast<int32_t>(0x80004005u),   // unspecified provider failure
    adErrCommandFailed = static_cast<int32_t>(0x80040E14u),    // statement failed (DB_E_ERRORSINCOMMAND)
    adErrNoCurrentRecord = 3021,                                // BOF or EOF is true, or record deleted
    adErrItemNotFound = 3265,                                   // no field of that name
    adErrObjectClosed = 3704,                                   // operation not allowed when closed
    adErrObjectOpen = 3705,                                     // operation not allowed when open
    adErrInvalidConnection = 3709,                              // connection closed or not usable here
    adErrFeatureNotAvailable = 3251,                            // provider does not support the operation
    adErrIllegalOperation = 3219,                               // operation not allowed in this context
    adErrInvalidArgument = 3001,                                // arguments of the wrong type / out of range
    adErrNoTransaction = static_cast<int32_t>(0x8004D00Eu),     // XACT_E_NOTRANSACTION
};

class Provider;   // platform/ado/provider.h
class Cursor;

// A client-side recordset that has read only its first row so far and will
// read the rest when it needs them. Its connection asks it to read them
// before anything else changes the database, so that it still holds the
// rows as they were when it opened.
class DeferredRead {
public:
    virtual void ReadRest() = 0;

protected:
    ~DeferredRead() = default;
};

// One diagnostic record of a failed operation.
struct Error {
    int32_t number = 0;        // the ADO-level error number
    int32_t nativeError = 0;   // the database's own error number
    std::string sqlState;
    std::string description;
    std::string source;
};

class Errors {
public:
    int32_t Count() const { return static_cast<int32_t>(items_.size()); }
    // 0-based, as ADO's Errors collection.
    const Error& Item(int32_t index) const;
    void Clear() { items_.clear(); }
    void Add(Error e) { items_.push_back(std::move(e)); }

private:
    std::vector<Error> items_;
};

extern const com::IID IID_Connection;
extern const com::IID IID_Recordset;

struct IConnectionMarker : com::IUnknown {};
struct IRecordsetMarker : com::IUnknown {};
}  // namespace ado

template <>
struct com::InterfaceId<ado::IConnectionMarker> {
    static const com::IID& Get() { return ado::IID_Connection; }
};
template <>
struct com::InterfaceId<ado::IRecordsetMarker> {
    static const com::IID& Get() { return ado::IID_Recordset; }
};

namespace ado {

class Connection : public com::Object<Connection, IConnectionMarker> {
public:
    Connection();
    ~Connection() override;

    // Opens from a connection string: a path to a SQLite file, or
    // "sqlite:PATH", or "odbc:<ODBC connection string>" when the ODBC
    // provider is built in. Raises on failure (Errors filled).
    // A SQLite file must exist; "sqlite:PATH?mode=create" creates a missing
    // file (for tools that make new databases) and "sqlite:PATH?mode=ro"
    // opens read-only without touching the file. The file keeps its own
    // journal mode.
    void Open(const std::string& connectionString);
    // Opens over a provider made by the caller (the scripted provider).
    void OpenWith(std::unique_ptr<Provider> provider);
    void Close();
    int32_t State() const;

    // The provider's name as ADO's Provider property gives it.
    std::string Provider() const;
    // Executes a statement; options as ADO's (-1 = unspecified). On failure
    // Errors holds one record per diagnostic and a BasicError is raised.
    void Execute(const std::string& sql, int32_t options = adOptionUnspecified);
    Errors& GetErrors() { return errors_; }
    const Errors& GetErrors() const { return errors_; }

    // Returns the nesting level (1 for the first BeginTrans).
    int32_t BeginTrans();
    void CommitTrans();
    void RollbackTrans();
    bool InTransaction() const { return transactionLevel_ > 0; }

    // A transaction around a whole unit of work that the work inside does
    // not see (the host puts one around each upgrader): BeginTrans and its
    // partners inside it work on a savepoint and report the levels they
    // would without it, and a failed statement takes back only its own
    // effect. An interruption takes the unit back whole. Closing the
    // connection with one open takes it back.
    void BeginOuterTransaction();
    // A failed commit takes the unit back and raises.
    void CommitOuterTransaction();
    void RollbackOuterTransaction();
    bool InOuterTransaction() const { return outerTransaction_; }
    // The provider's helper indices (provider.h): used from now on or not;
    // all dropped (answers how many); how many the database holds.
    void UseHelperIndexes(bool use);
    int32_t DropHelperIndexes();
    int32_t CountHelperIndexes();
    // Thread-safe, for a process about to end on a signal: stops the running
    // statement, takes back the open transaction and keeps the connection
    // from doing anything more. True when work was taken back.
    bool Abandon();

    // For the recordset layer and providers.
    ado::Provider& GetProvider();
    // Records the failure of a provider call in Errors and raises it.
    [[noreturn]] void RaiseProviderFailure(const std::exception& e);

    // Recordsets with rows still to read, and the call that makes them read
    // those rows before a change made by anyone but `writer`.
    void AddDeferredRead(DeferredRead* reader);
    void RemoveDeferredRead(DeferredRead* reader);
    void CompleteDeferredReads(const DeferredRead* writer = nullptr);

private:
    // What commit and rollback of the outer transaction share: the checks,
    // and the connection's state set to "none open".
    ado::Provider& EndOuterTransaction();

    std::unique_ptr<ado::Provider> provider_;
    std::vector<DeferredRead*> deferredReads_;
    Errors errors_;
    int32_t transactionLevel_ = 0;
    bool outerTransaction_ = false;
};

// QueryInterface for the connection behind an object (what Basic's cast of
// the login's connection to _Connection does); null when it is none.
com::ComPtr<Connection> ConnectionFromUnknown(com::IUnknown* unknown);

class Recordset;

// A column of the current row; valid while its recordset is open.
class Field {
public:
    Field(Recordset* owner, int index) : owner_(owner), index_(index) {}
    const std::string& Name() const;
    // Reading at BOF/EOF raises 3021.
    Variant Value() const;
    void SetValue(const Variant& value);

private:
    Recordset* owner_;
    int index_;
};

class Recordset : public com::Object<Recordset, IRecordsetMarker> {
public:
    Recordset();
    ~Recordset() override;

    void SetCursorLocation(int32_t location);
    int32_t CursorLocation() const { return cursorLocation_; }

    // Opens the query on the connection. A client-side recordset reads all
    // rows at once; a server-side forward-only one reads them as it moves.
    void Open(const std::string& source, Connection* connection,
              int32_t cursorType = adOpenUnspecified, int32_t lockType = adLockUnspecified,
              int32_t options = adOptionUnspecified);
    void Close();
    int32_t State() const;

    bool BOF() const;
    bool EOF() const;
    void MoveFirst();
    void MoveNext();
    void MovePrevious();
    void MoveLast();
    // -1 when the cursor cannot tell (server-side forward-only).
    int32_t RecordCount() const;

    int32_t FieldCount() const;
    // Field by name (case-insensitive); a missing name raises 3265.
    Field Fields(const std::string& name);
    Field Fields(int32_t index);
    // Shorthands for Fields(name).Value().
    Variant Get(const std::string& name) { return Fields(name).Value(); }
    void Set(const std::string& name, const Variant& value) { Fields(name).SetValue(value); }

    // ADO's Find with a single criterion "COL op value" (op one of
    // = <> < > <= >= LIKE; value a number, 'text' or #date#). From the
    // start row (current row when start is Empty) skipping skipRecords rows,
    // searching in direction. No match leaves the recordset at EOF (forward)
    // or BOF (backward).
    void Find(const std::string& criteria, int32_t skipRecords = 0,
              int32_t searchDirection = adSearchForward, const Variant& start = Variant());
    // Criteria joined with AND (and OR as ADO allows); the empty text clears
    // the filter. Setting a filter moves to the first visible row.
    void SetFilter(const std::string& criteria);
    const std::string& Filter() const { return filter_; }

    // AddNew starts a new row (the current row until Update); Update writes
    // the pending new or changed row through to the base table at once.
    void AddNew();
    void Update();
    void CancelUpdate();
    // Save with no destination: writes a pending edit like Update.
    void Save();

    // ---- for Field --------------------------------------------------------
    const std::string& FieldName(int index) const;
    Variant FieldValue(int index) const;
    void SetFieldValue(int index, const Variant& value);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    int32_t cursorLocation_ = adUseServer;
    std::string filter_;
};

com::ComPtr<Recordset> NewRecordset();
com::ComPtr<Connection> NewConnection();

}  // namespace ado
