// The data-access contract every provider keeps, run against each backend
// (contract_backends.cpp) as scripts of steps (ado_test::Script):
// navigation, Find and Filter, rows and pending edits written through to
// the base table, transactions, the Errors of a failing statement and the
// Provider text.
#include <gtest/gtest.h>

#include <cctype>

#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"
#include "tests/platform/contract_backend.h"
#include "tests/platform/module/error_text.h"
#include "tests/support/test_host.h"

namespace contract {
namespace {

using Rows = std::vector<std::string>;
using Steps = std::vector<std::string>;

// Steps with %T standing for the table.
Steps WithTable(Steps steps, const std::string& table) {
    for (std::string& step : steps) step = kdvq::testing::ReplaceAll(step, "%T", table);
    return steps;
}

struct BackendFactory {
    const char* name;
    std::unique_ptr<Backend> (*make)();
};

// Run once per backend: makes the backend, skips when the backend cannot
// run here, and opens the test's connection and another one.
class Contract : public ::testing::TestWithParam<BackendFactory> {
protected:
    void SetUp() override {
        backend_ = GetParam().make();
        if (!backend_->SkipReason().empty()) GTEST_SKIP() << backend_->SkipReason();
        connection_ = backend_->Connect();
        other_ = backend_->Connect();
    }

    // Creates a table of the test with these columns and rows (each the
    // text of a VALUES list); returns its name.
    std::string MakeTable(const std::string& base, const std::string& columns, const Rows& rows) {
        std::string table = backend_->Table(base);
        connection_->Execute("CREATE TABLE " + table + " (" + columns + ")");
        for (const std::string& row : rows) connection_->Execute("INSERT INTO " + table + " VALUES (" + row + ")");
        return table;
    }

    // What another connection reads from the table.
    Rows SeenByOther(const std::string& table) {
        return kdvq::testing::QueryRows(other_.Get(), "SELECT * FROM " + table + " ORDER BY ID");
    }

    // The answers of the steps (ado_test::Script, " / " between them, %T
    // for the table); "seen" answers what another connection reads, all
    // rows joined by commas, "other|SQL" runs a statement on that
    // connection and "error" answers the text of the first Errors entry.
    // Every script ends with no transaction open.
    std::string RunScript(const std::string& table, const std::string& steps) {
        ado_test::Script script(
            *connection_, {},
            {{"seen", [&](auto&) { return answer_file::Join(SeenByOther(table), ","); }},
             {"other", [&](const std::string& sql) { other_->Execute(sql); return ""; }},
             {"error", [&](auto&) { return connection_->GetErrors().Item(0).description; }},
             {"in-transaction", [&](auto&) { return connection_->InTransaction() ? "True" : "False"; }}});
        const std::string answers = script.Run(WithTable(answer_file::Split(steps, " / "), table));
        EXPECT_FALSE(connection_->InTransaction());
        EXPECT_FALSE(connection_->InOuterTransaction());
        // A script that failed part-way may leave an edit pending or a
        // transaction open; both are taken back so the next case starts
        // as the others do instead of failing after it.
        script.Run({"cancel", "close"});
        while (connection_->InTransaction()) connection_->RollbackTrans();
        if (connection_->InOuterTransaction()) connection_->RollbackOuterTransaction();
        return answers;
    }

    std::unique_ptr<Backend> backend_;
    com::ComPtr<ado::Connection> connection_;
    com::ComPtr<ado::Connection> other_;
};

// Each case: "situation; steps" over one table of four rows.
TEST_P(Contract, AnswersNavigationScripts) {
    const std::string table = MakeTable("N", "ID INT PRIMARY KEY, NAME VARCHAR(20), AMOUNT FLOAT, NOTE VARCHAR(20)",
                                        {"1, 'a', 1.5, NULL", "2, 'b', NULL, 'x'", "3, 'O''Hara', 2.5, 'y'",
                                         "4, 'B', 3, 'z'"});
    answer_file::ExpectAnswers("navigation", [&](const std::string& input) {
        return RunScript(table, answer_file::Split(input, "; ")[1]);
    });
}

// Each case: "situation; columns; rows; steps" over a table of its own.
TEST_P(Contract, WritesThroughToTheTableAndTransactions) {
    int number = 0;
    for (const char* situation : {"writes", "transactions"}) {
        answer_file::ExpectAnswers(situation, [&](const std::string& input) {
            const std::vector<std::string> fields = answer_file::Split(input, "; ");
            const std::string table =
                MakeTable("S" + std::to_string(++number), fields[1], answer_file::Split(fields[2], " / "));
            return RunScript(table, fields[3]);
        });
    }
}

// The answer with the table's name written %T again (%t in lower case) and
// line breaks as "\n", as the same for every run of a backend.
std::string Generalised(std::string answer, const std::string& table) {
    std::string lower = table;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const std::pair<std::string, std::string> marks[] = {{table, "%T"}, {lower, "%t"}, {"\n", "\\n"}};
    for (const auto& [name, mark] : marks) answer = kdvq::testing::ReplaceAll(answer, name, mark);
    return answer;
}

// Each case of the backend's own file, a statement on a table %T of one
// row keyed by ID, answers what it raises and the Errors entries after
// it; "provider" answers the Provider text.
TEST_P(Contract, ProviderAndTheServersErrors) {
    const std::string table = MakeTable("KDVQ_ERRS", "ID INT PRIMARY KEY, NAME VARCHAR(20) NOT NULL", {"1, 'a'"});
    answer_file::ExpectAnswers("server " + std::string(GetParam().name), [&](const std::string& input) {
        if (input == "provider") return connection_->Provider();
        std::vector<std::string> answer = {fixture::RaisedBy([&] { connection_->Execute(WithTable({input}, table)[0]); })};
        for (const std::string& error : ado_test::DescribeErrors(*connection_)) answer.push_back(error);
        return Generalised(answer_file::Join(answer, " / "), table);
    });
}

INSTANTIATE_TEST_SUITE_P(Backends, Contract,
                         ::testing::Values(BackendFactory{"Sqlite", MakeSqliteBackend},
                                           BackendFactory{"PostgresOdbc", MakePostgresOdbcBackend},
                                           BackendFactory{"SqliteOdbc", MakeSqliteOdbcBackend}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace contract
