#pragma once
// A provider for tests: it answers statements and queries by rules and
// records everything the library did, so that exact statement sequences of
// a dialect without an engine here can be compared whole.
//
// Lines it records (each passed to the record function):
//   "EXEC <sql>"                         a statement that succeeded
//   "EXEC <sql> => ERROR <n>[,<n>...]"   a statement that failed with these native errors
//   "OPEN <sql>"                         a query opened
//   "OPEN <sql> => ERROR <n>"            a query that failed
//   "INSERT <table> (COL=value, ...)"    a row added through a recordset
//   "UPDATE <table> #<row> SET COL=value, ..."  changed fields of row <row>
//                                        (1-based position in the query's rows;
//                                        rows added later number on from there)
//   "BEGIN", "COMMIT", "ROLLBACK"
// Values are written as Variant::Describe gives them (Null, 12, 'text'),
// columns in the order the recordset set them. <table> is the single table
// after the query's FROM, as written; queries over several tables are
// read-only.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/automation/variant.h"

namespace ado {

struct ScriptedRows {
    std::vector<std::string> columns;
    std::vector<std::vector<automation::Variant>> rows;
};

// What a rule answers.
struct ScriptedAnswer {
    std::vector<int32_t> nativeErrors;  // non-empty: the call fails with these
    std::string description = "scripted failure";
    ScriptedRows rows;                  // for queries
};

class ScriptedProvider : public Provider {
public:
    ScriptedProvider(std::string providerName, std::function<void(const std::string&)> record);
    ~ScriptedProvider() override;

    // ---- rules (matched on the whole text; the latest rule for a text wins) ----
    void FailExecute(const std::string& sql, std::vector<int32_t> nativeErrors,
                     std::string description = "scripted failure");
    void AnswerQuery(const std::string& sql, ScriptedRows rows);
    void FailQuery(const std::string& sql, int32_t nativeError = 942, std::string description = "table or view does not exist");
    // Consulted before the rules: answer nullopt to fall through. kind is
    // "EXEC" or "OPEN".
    using Handler = std::function<std::optional<ScriptedAnswer>(const std::string& kind, const std::string& sql)>;
    void SetHandler(Handler handler);
    // Unknown statements succeed; unknown queries fail (942) unless this is
    // set, in which case they answer no rows and no columns.
    void SetUnknownQueriesSucceed(bool succeed);

    // ---- Provider (declared in provider.h) ----
    std::string Name() const override;
    void Execute(const std::string& sql) override;
    std::unique_ptr<Cursor> OpenQuery(const std::string& sql, const QueryOptions& options) override;
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;
    // The host's transaction around an upgrader is not part of what the
    // library did: it is not recorded.
    void BeginOuterTransaction() override {}
    void CommitOuterTransaction() override {}
    void RollbackOuterTransaction() override {}
    bool Abandon() override { return false; }

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ado
