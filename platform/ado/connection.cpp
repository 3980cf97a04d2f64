#include <algorithm>
#include <cctype>

#include "platform/ado/ado.h"
#include "platform/ado/ado_errors.h"
#include "platform/ado/provider.h"
#include "platform/ado/provider_call.h"
#include "platform/ado/sqlite/sqlite_provider.h"
#include "platform/automation/basic_error.h"

namespace ado {

// ADO's own interface identifiers of _Connection and _Recordset.
const com::IID IID_Connection{0x00000550, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
const com::IID IID_Recordset{0x00000556, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};

namespace {

bool StartsWithNoCase(const std::string& text, const std::string& prefix) {
    if (text.size() < prefix.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != prefix[i]) return false;
    return true;
}

// "PATH" or "PATH?mode=create|rwc|ro|rw".
SqliteOpenMode SplitSqliteTarget(const std::string& target, std::string* path) {
    static const std::string kMode = "?mode=";
    size_t at = target.rfind(kMode);
    *path = target.substr(0, at);
    if (at == std::string::npos) return SqliteOpenMode::kReadWrite;
    std::string mode = target.substr(at + kMode.size());
    if (mode == "create" || mode == "rwc") return SqliteOpenMode::kCreate;
    if (mode == "ro") return SqliteOpenMode::kReadOnly;
    if (mode == "rw") return SqliteOpenMode::kReadWrite;
    RaiseAdo(adErrInvalidArgument, kConnectionSource, "Unknown SQLite open mode '" + mode + "' (use create, rw or ro)");
}

}  // namespace

std::unique_ptr<Provider> OpenProvider(const std::string& connectionString) {
    if (StartsWithNoCase(connectionString, "odbc:")) {
#ifdef KDVQ_HAVE_ODBC
        return OpenOdbcProvider(connectionString.substr(5));
#else
        RaiseAdo(adErrProviderFailed, kConnectionSource,
                 "ODBC provider not available: this build has no ODBC support");
#endif
    }
    std::string target = StartsWithNoCase(connectionString, "sqlite:") ? connectionString.substr(7) : connectionString;
    std::string path;
    SqliteOpenMode mode = SplitSqliteTarget(target, &path);
    if (path.empty()) RaiseAdo(adErrInvalidArgument, kConnectionSource, "No database file given");
    return OpenSqliteProvider(path, mode);
}

const Error& Errors::Item(int32_t index) const {
    if (index < 0 || index >= Count()) RaiseAdo(adErrItemNotFound, kConnectionSource);
    return items_[static_cast<size_t>(index)];
}

Connection::Connection() = default;

Connection::~Connection() {
    try {
        Close();
    } catch (...) {
        // A rollback failing while the object goes away has no one to tell.
    }
}

void Connection::Open(const std::string& connectionString) {
    if (provider_) RaiseAdo(adErrObjectOpen, kConnectionSource);
    errors_.Clear();
    provider_ = CallProvider(*this, [&] { return OpenProvider(connectionString); });
}

void Connection::OpenWith(std::unique_ptr<ado::Provider> provider) {
    if (provider_) RaiseAdo(adErrObjectOpen, kConnectionSource);
    errors_.Clear();
    provider_ = std::move(provider);
}

void Connection::Close() {
    if (!provider_) return;
    // Client-side recordsets stay usable after their connection closes.
    CompleteDeferredReads();
    // Closing with a transaction open discards its work, as ADO does.
    std::unique_ptr<ado::Provider> provider = std::move(provider_);
    if (transactionLevel_ > 0) {
        transactionLevel_ = 0;
        provider->RollbackTrans();
    }
    if (outerTransaction_) {
        outerTransaction_ = false;
        provider->RollbackOuterTransaction();
    }
}

int32_t Connection::State() const { return provider_ ? adStateOpen : adStateClosed; }

std::string Connection::Provider() const { return provider_ ? provider_->Name() : std::string(); }

ado::Provider& Connection::GetProvider() {
    if (!provider_) RaiseAdo(adErrObjectClosed, kConnectionSource);
    return *provider_;
}

void Connection::Execute(const std::string& sql, int32_t /*options: every statement runs as text*/) {
    ado::Provider& provider = GetProvider();
    CompleteDeferredReads();
    errors_.Clear();
    CallProvider(*this, [&] { provider.Execute(sql); });
}

int32_t Connection::BeginTrans() {
    ado::Provider& provider = GetProvider();
    // Neither engine the upgraders target nests transactions through ADO.
    if (transactionLevel_ > 0) RaiseAdo(adErrFeatureNotAvailable, kConnectionSource);
    CompleteDeferredReads();
    CallProvider(*this, [&] { provider.BeginTrans(); });
    return ++transactionLevel_;
}

void Connection::CommitTrans() {
    ado::Provider& provider = GetProvider();
    if (transactionLevel_ == 0) RaiseAdo(adErrNoTransaction, kConnectionSource);
    CompleteDeferredReads();
    CallProvider(*this, [&] { provider.CommitTrans(); });
    --transactionLevel_;
}

void Connection::RollbackTrans() {
    ado::Provider& provider = GetProvider();
    if (transactionLevel_ == 0) RaiseAdo(adErrNoTransaction, kConnectionSource);
    CompleteDeferredReads();
    // The transaction is over whatever the engine answers.
    --transactionLevel_;
    CallProvider(*this, [&] { provider.RollbackTrans(); });
}

void Connection::BeginOuterTransaction() {
    ado::Provider& provider = GetProvider();
    if (outerTransaction_ || transactionLevel_ > 0) RaiseAdo(adErrFeatureNotAvailable, kConnectionSource);
    CompleteDeferredReads();
    errors_.Clear();
    CallProvider(*this, [&] { provider.BeginOuterTransaction(); });
    outerTransaction_ = true;
}

void Connection::CommitOuterTransaction() {
    ado::Provider& provider = EndOuterTransaction();
    try {
        CallProvider(*this, [&] { provider.CommitOuterTransaction(); });
    } catch (...) {
        // Whatever failed, the unit is over: taken back, not left open for a
        // later commit.
        try {
            provider.RollbackOuterTransaction();
        } catch (...) {
            // The commit's failure is the one to report.
        }
        throw;
    }
}

void Connection::RollbackOuterTransaction() {
    ado::Provider& provider = EndOuterTransaction();
    CallProvider(*this, [&] { provider.RollbackOuterTransaction(); });
}

ado::Provider& Connection::EndOuterTransaction() {
    ado::Provider& provider = GetProvider();
    if (!outerTransaction_) RaiseAdo(adErrNoTransaction, kConnectionSource);
    CompleteDeferredReads();
    errors_.Clear();
    // A caller's transaction left open inside ends with the unit.
    transactionLevel_ = 0;
    outerTransaction_ = false;
    return provider;
}

void Connection::UseHelperIndexes(bool use) { GetProvider().UseHelperIndexes(use); }

int32_t Connection::DropHelperIndexes() {
    ado::Provider& provider = GetProvider();
    CompleteDeferredReads();
    return CallProvider(*this, [&] { return provider.DropHelperIndexes(); });
}

int32_t Connection::CountHelperIndexes() {
    ado::Provider& provider = GetProvider();
    return CallProvider(*this, [&] { return provider.CountHelperIndexes(); });
}

bool Connection::Abandon() { return provider_ && provider_->Abandon(); }

void Connection::AddDeferredRead(DeferredRead* reader) { deferredReads_.push_back(reader); }

void Connection::RemoveDeferredRead(DeferredRead* reader) {
    deferredReads_.erase(std::remove(deferredReads_.begin(), deferredReads_.end(), reader), deferredReads_.end());
}

void Connection::CompleteDeferredReads(const DeferredRead* writer) {
    // Each reader removes itself before it reads, so the first reader other
    // than the writer is always a new one; nothing is copied on the row
    // writes of a recordset that is the only one still to read.
    for (;;) {
        auto other = std::find_if(deferredReads_.begin(), deferredReads_.end(),
                                  [&](const DeferredRead* reader) { return reader != writer; });
        if (other == deferredReads_.end()) return;
        (*other)->ReadRest();
    }
}

void Connection::RaiseProviderFailure(const std::exception& e) {
    errors_.Clear();
    if (const auto* failure = dynamic_cast<const ProviderError*>(&e)) {
        for (const Diagnostic& d : failure->Diagnostics())
            errors_.Add(Error{failure->Number(), d.nativeError, d.sqlState, d.message, failure->Source()});
        std::string description = failure->Diagnostics().empty() ? AdoDescription(failure->Number())
                                                                  : failure->Diagnostics().front().message;
        throw automation::BasicError(failure->Number(), failure->Source(), description);
    }
    if (const auto* basic = dynamic_cast<const automation::BasicError*>(&e)) throw *basic;
    errors_.Add(Error{adErrProviderFailed, 0, "HY000", e.what(), kConnectionSource});
    throw automation::BasicError(adErrProviderFailed, kConnectionSource, e.what());
}

com::ComPtr<Connection> ConnectionFromUnknown(com::IUnknown* unknown) {
    if (!unknown) return nullptr;
    IConnectionMarker* marker = nullptr;
    if (com::Failed(unknown->QueryInterface(IID_Connection, reinterpret_cast<void**>(&marker))) || !marker)
        return nullptr;
    return com::ComPtr<Connection>::Attach(static_cast<Connection*>(marker));
}

com::ComPtr<Connection> NewConnection() { return Connection::Create(); }

ProviderError::ProviderError(std::string source, std::vector<Diagnostic> diagnostics, int32_t number)
    : std::runtime_error(diagnostics.empty() ? std::string("provider failure") : diagnostics.front().message),
      source_(std::move(source)),
      diagnostics_(std::move(diagnostics)),
      number_(number) {}

ProviderError::ProviderError(std::string source, int32_t nativeError, std::string message, int32_t number,
                             std::string sqlState)
    : ProviderError(std::move(source), {Diagnostic{nativeError, std::move(sqlState), std::move(message)}}, number) {}

}  // namespace ado
