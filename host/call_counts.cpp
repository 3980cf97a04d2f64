#include "host/call_counts.h"

#include <atomic>

#include "host/provider_tap.h"
#include "platform/ado/provider.h"
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
    if (target.IsFile()) {
        connection->OpenWith(
            TapProvider(ado::OpenSqliteProvider(target.path, ado::SqliteOpenMode::kReadWrite), Count));
        return;
    }
#ifdef KDVQ_HAVE_ODBC
    connection->OpenWith(TapProvider(ado::OpenOdbcProvider(target.odbc), Count));
#else
    connection->Open(target.ConnectionString(false));
#endif
}

}  // namespace kdhost
