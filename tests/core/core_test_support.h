#pragma once
// Running the core upgraders in tests: scripted situations compared as
// whole transcripts, and runs on real SQLite files whose rows are read back.
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "library/class_table.h"
#include "platform/ado/scripted/scripted_provider.h"
#include "tests/support/test_host.h"

namespace kdvq::testing {

using Lines = std::vector<std::string>;
using Variant = automation::Variant;

inline const std::string kOracleProvider = "OraOLEDB.Oracle";
inline const std::string kSqlServerProvider = "SQLOLEDB";

Lines Concat(std::initializer_list<Lines> parts);
// The lines from position first on.
Lines From(const Lines& lines, size_t first);

// Transcript lines of a query that answered, and of one that failed as a
// missing table or column does.
std::string Found(const std::string& sql);
std::string NotFound(const std::string& sql);

// A statement run with step reporting that succeeded.
Lines Ran(const std::string& progress, const std::string& sql);
// A statement that failed with a native error; level 2 when the error means
// "already in place", else 1.
Lines RanFailing(const std::string& progress, const std::string& sql, int32_t nativeError, int32_t level);
// The log line of a statement failing inside DoCommand.
std::string CommandFailure(int32_t level, const std::string& sql, const std::string& description = "scripted failure");
// The log line of a failure reported by a handler chain, innermost tag last.
std::string HandlerFailure(const std::vector<std::string>& tags, const std::string& description);

// The core version table read and raised to version.
Lines CoreVersionWritten(int32_t version, const std::string& prefix = "");

using Script = std::function<void(ado::ScriptedProvider&)>;
// A repository whose core version row reads version, where the queries in
// present answer (no rows) and the statement failing fails with nativeError.
Script CoreRepository(int32_t version, std::vector<std::string> present = {}, std::string failing = "",
                      int32_t nativeError = 0);

// Scripted rows with the given columns.
ado::ScriptedRows Table(std::vector<std::string> columns, std::vector<std::vector<Variant>> rows = {});

// Queries answering while their table is there: a statement in creates
// makes them answer (no rows), one in drops makes them fail again. The
// failing statement fails with its native error and changes nothing.
struct TrackedTable {
    std::vector<std::string> queries;
    bool present;
    std::set<std::string> creates;
    std::set<std::string> drops;
};
struct FailingStatement {
    std::string sql;
    int32_t nativeError = 0;
};
void TrackTables(ado::ScriptedProvider& p, std::vector<TrackedTable> tables, FailingStatement failing = {});

enum class Outcome { False, True, Raised };
inline std::ostream& operator<<(std::ostream& os, Outcome o) {
    return os << (o == Outcome::True ? "True" : o == Outcome::False ? "False" : "Raised");
}

// One scripted situation of one class: Enabled with version, then Execute.
struct ScriptedCase {
    std::string name;
    std::string provider;
    int32_t version;
    Script script;
    Outcome outcome;
    Lines lines;
    std::string prefix = "";
};
void ExpectScripted(UpgraderPtr (*create)(), const std::vector<ScriptedCase>& cases);

// ---- real SQLite ----------------------------------------------------------

// A repository file built from statements (separated by ";\n").
class SqliteRepository {
public:
    explicit SqliteRepository(const std::string& schema);
    ado::Connection* Connection() const { return connection_.Get(); }
    // Every row of a query, each as its values in Describe's form joined
    // with "|", e.g. "5|'Labour'|Null".
    Lines Query(const std::string& sql) const;
    // Enabled with version (which must enable the upgrader), then Execute;
    // the host's transcript holds the progress texts and the log.
    Outcome Run(TestHost& host, UpgraderPtr (*create)(), int32_t version) const;

private:
    TempDir dir_;
    com::ComPtr<ado::Connection> connection_;
};

}  // namespace kdvq::testing
