#include "host/call_counts.h"

#include <atomic>

#include "host/provider_tap.h"
#include "platform/ado/provider.h"
#include "platform/ado/provider_call.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace kdhost {

namespace {

std::atomic<long> statements{0};
std::atomic<long> rowWrites{0};

void Count(TappedCall call, const std::string&) {
    if (call == TappedCall::kStatement || call == TappedCall::kQuery) ++statements;
    if (call == TappedCall::kRowInsert || call == TappedCall::kRowUpdate) ++rowWrites;
}

}  // namespace

CallCounts CountedCalls() { return {statements.load(), rowWrites.load()}; }

void OpenCounted(ado::Connection* connection, const Target& target) {
#ifndef KDVQ_HAVE_ODBC
    if (!target.IsFile()) return connection->Open(target.ConnectionString(false));
#endif
    // A provider that cannot be opened fails as Connection::Open makes it
    // fail: its diagnostics in the connection's Errors, raised as an error.
    std::unique_ptr<ado::Provider> provider = ado::CallProvider(*connection, [&]() -> std::unique_ptr<ado::Provider> {
#ifdef KDVQ_HAVE_ODBC
        if (!target.IsFile()) return ado::OpenOdbcProvider(target.odbc);
#endif
        return ado::OpenSqliteProvider(target.path, ado::SqliteOpenMode::kReadWrite);
    });
    connection->OpenWith(TapProvider(std::move(provider), Count));
}

}  // namespace kdhost
