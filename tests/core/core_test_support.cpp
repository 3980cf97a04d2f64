#include "tests/core/core_test_support.h"

#include <memory>
#include <optional>

#include "platform/automation/basic_error.h"

namespace kdvq::testing {

Lines Concat(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

Lines From(const Lines& lines, size_t first) { return Lines(lines.begin() + static_cast<long>(first), lines.end()); }

std::string Found(const std::string& sql) { return "OPEN " + sql; }
std::string NotFound(const std::string& sql) { return "OPEN " + sql + " => ERROR 942"; }

Lines Ran(const std::string& progress, const std::string& sql) {
    return {"START " + progress, "EXEC " + sql, "DONE res102"};
}

std::string CommandFailure(int32_t level, const std::string& sql, const std::string& description) {
    return "LOG " + std::to_string(level) + " kdVqUpgraders:\\r\\nmodMain::DoCommand\\r\\n-2147217900: " +
           description + "\\r\\nCommand: " + sql;
}

Lines RanFailing(const std::string& progress, const std::string& sql, int32_t nativeError, int32_t level) {
    return {"START " + progress, "EXEC " + sql + " => ERROR " + std::to_string(nativeError),
            CommandFailure(level, sql)};
}

std::string HandlerFailure(const std::vector<std::string>& tags, const std::string& description) {
    std::string text = "LOG 1 kdVqUpgraders:";
    for (const std::string& tag : tags) text += "\\r\\n" + tag;
    return text + "\\r\\n" + description;
}

Lines CoreVersionWritten(int32_t version, const std::string& prefix) {
    return {Found("select VERSION from " + prefix + "KD_VQ_DB_VERSION"),
            "UPDATE " + prefix + "KD_VQ_DB_VERSION #1 SET VERSION=" + std::to_string(version)};
}

Script CoreRepository(int32_t version, std::vector<std::string> present, std::string failing, int32_t nativeError) {
    return [=](ado::ScriptedProvider& p) {
        p.AnswerQuery("select VERSION from KD_VQ_DB_VERSION", Table({"VERSION"}, {{version}}));
        for (const std::string& query : present) p.AnswerQuery(query, Table({"X"}));
        if (!failing.empty()) p.FailExecute(failing, {nativeError});
    };
}

ado::ScriptedRows Table(std::vector<std::string> columns, std::vector<std::vector<Variant>> rows) {
    return ado::ScriptedRows{std::move(columns), std::move(rows)};
}

void TrackTables(ado::ScriptedProvider& p, std::vector<TrackedTable> tables, FailingStatement failing) {
    auto state = std::make_shared<std::vector<TrackedTable>>(std::move(tables));
    p.SetHandler([state, failing](const std::string& kind,
                                  const std::string& sql) -> std::optional<ado::ScriptedAnswer> {
        if (kind == "EXEC" && sql == failing.sql) {
            ado::ScriptedAnswer answer;
            answer.nativeErrors = {failing.nativeError};
            return answer;
        }
        for (TrackedTable& table : *state) {
            if (kind == "EXEC") {
                if (table.creates.count(sql)) table.present = true;
                if (table.drops.count(sql)) table.present = false;
                continue;
            }
            for (const std::string& query : table.queries) {
                if (query != sql) continue;
                ado::ScriptedAnswer answer;
                if (!table.present) {
                    answer.nativeErrors = {942};
                    answer.description = "table or view does not exist";
                }
                return answer;
            }
        }
        return std::nullopt;
    });
}

void ExpectScripted(UpgraderPtr (*create)(), const std::vector<ScriptedCase>& cases) {
    for (const ScriptedCase& c : cases) {
        SCOPED_TRACE(c.name);
        TestHost host;
        ado::ScriptedProvider* p = nullptr;
        auto connection = host.ScriptedConnection(c.provider, &p);
        c.script(*p);
        UpgraderPtr upgrader = create();
        ASSERT_TRUE(CallEnabled(upgrader.Get(), host.Login(connection.Get(), c.prefix).Get(), c.version));
        Outcome outcome = Outcome::Raised;
        try {
            outcome = CallExecute(upgrader.Get(), host.Callback().Get()) ? Outcome::True : Outcome::False;
        } catch (const automation::BasicError&) {
        }
        EXPECT_EQ(outcome, c.outcome);
        EXPECT_EQ(host.Log().Lines(), c.lines);
    }
}

SqliteRepository::SqliteRepository(const std::string& schema) : connection_(OpenSqlite(dir_.File("repository.db"))) {
    ExecAll(connection_.Get(), schema);
}

Lines SqliteRepository::Query(const std::string& sql) const {
    Lines rows;
    auto rs = ado::NewRecordset();
    rs->Open(sql, connection_.Get(), ado::adOpenForwardOnly, ado::adLockReadOnly);
    while (!rs->EOF()) {
        std::string row;
        for (int32_t i = 0; i < rs->FieldCount(); ++i) row += (i ? "|" : "") + rs->Fields(i).Value().Describe();
        rows.push_back(row);
        rs->MoveNext();
    }
    rs->Close();
    return rows;
}

Outcome SqliteRepository::Run(TestHost& host, UpgraderPtr (*create)(), int32_t version) const {
    UpgraderPtr upgrader = create();
    EXPECT_TRUE(CallEnabled(upgrader.Get(), host.Login(connection_.Get()).Get(), version));
    try {
        return CallExecute(upgrader.Get(), host.Callback().Get()) ? Outcome::True : Outcome::False;
    } catch (const automation::BasicError&) {
        return Outcome::Raised;
    }
}

}  // namespace kdvq::testing
