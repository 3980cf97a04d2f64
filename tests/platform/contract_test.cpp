// The data-access contract every provider keeps, run against each backend
// (contract_backends.cpp) as scripts of steps (ado_test::Script):
// navigation, Find and Filter, rows and pending edits written through to
// the base table, transactions, the Errors of a failing statement and the
// Provider text.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/platform/contract_backend.h"
#include "tests/support/test_host.h"

namespace contract {
namespace {

using Rows = std::vector<std::string>;
using Steps = std::vector<std::string>;

std::string Joined(const Rows& rows) {
    std::string text;
    for (const std::string& row : rows) text += (text.empty() ? "" : ",") + row;
    return text;
}

// Steps with %T standing for the table.
Steps WithTable(Steps steps, const std::string& table) {
    for (std::string& step : steps)
        for (size_t at = step.find("%T"); at != std::string::npos; at = step.find("%T", at + table.size()))
            step.replace(at, 2, table);
    return steps;
}

class Contract : public BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (!IsSkipped()) other_ = backend_->Connect();
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

    com::ComPtr<ado::Connection> other_;
};

TEST_P(Contract, ProviderTextNamesTheServer) { EXPECT_EQ(connection_->Provider(), backend_->ProviderText()); }

enum Cursor { kStream, kStatic, kClient };

struct NavigationCase {
    const char* situation;
    Cursor cursor;
    const char* where;
    Steps steps;
    const char* answers;
};

TEST_P(Contract, AnswersNavigationScripts) {
    const std::string table = MakeTable("N", "ID INT PRIMARY KEY, NAME VARCHAR(20), AMOUNT FLOAT, NOTE VARCHAR(20)",
                                        {"1, 'a', 1.5, NULL", "2, 'b', NULL, 'x'", "3, 'O''Hara', 2.5, 'y'",
                                         "4, 'B', 3, 'z'"});
    const char* none = " WHERE ID > 9";
    const std::vector<NavigationCase> cases = {
        {"client forward past the end", kClient, "", {"bof", "row", "next", "next", "next", "next", "next"},
         "False 1|'a'|1.5|Null 2 3 4 EOF E3021"},
        {"client backward past the start", kClient, "", {"last", "prev", "prev", "prev", "prev", "prev"},
         "4 3 2 1 BOF E3021"},
        {"client first after the end", kClient, "", {"last", "next", "first", "count"}, "4 EOF 1 4"},
        {"client empty", kClient, none, {"bof", "eof", "count", "first", "last", "next"},
         "True True 0 E3021 E3021 E3021"},
        {"server static", kStatic, "", {"count", "row", "next", "next", "next", "next"}, "4 1|'a'|1.5|Null 2 3 4 EOF"},
        {"stream forward", kStream, "", {"count", "row", "next", "next", "next", "next", "next"},
         "-1 1|'a'|1.5|Null 2 3 4 EOF E3021"},
        {"stream first on the first row stays", kStream, "", {"first", "next"}, "1 2"},
        {"stream first later runs again", kStream, "", {"next", "next", "first", "next"}, "2 3 1 2"},
        {"stream first after the end runs again", kStream, "", {"next", "next", "next", "next", "first"},
         "2 3 4 EOF 1"},
        {"stream cannot go back", kStream, "", {"prev", "last", "filter|ID=1"}, "E3251 E3251 E3251"},
        {"stream empty", kStream, none, {"bof", "eof", "count", "first", "next"}, "True True -1 E3021 E3021"},
        {"field names ignore case", kClient, "", {"get|NOPE", "get|name"}, "E3265 'a'"},
        {"find includes the current row", kClient, "", {"find|ID=1", "find|ID=3"}, "1 3"},
        {"find text ignores case", kClient, "", {"find|NAME='b'", "find|NAME='b'|1", "find|NAME='o''hara'|0|-1"},
         "2 4 3"},
        {"find skips Null", kClient, "", {"find|AMOUNT>2|1"}, "3"},
        {"find no match forward is EOF", kClient, "", {"find|ID=9", "find|ID=1"}, "EOF EOF"},
        {"find backward", kClient, "", {"last", "find|NAME='b'|0|-1", "find|NAME='b'|1|-1"}, "4 4 2"},
        {"find no match backward is BOF", kClient, "", {"last", "find|NOTE='q'|0|-1"}, "4 BOF"},
        {"find from the first bookmark", kClient, "", {"last", "find|ID>1|0|1|1"}, "4 2"},
        {"find from the last bookmark", kClient, "", {"find|ID<4|0|-1|2"}, "3"},
        {"find refuses", kClient, "", {"find|NOPE=1", "find|ID=1 AND AMOUNT=2", "find|ID=1|0|5"},
         "E3265 E3001 E3001"},
        {"stream find onwards", kStream, "", {"find|NAME='b'", "find|NAME='b'|1", "find|ID=1"}, "2 4 EOF"},
        {"stream find backward refused", kStream, "", {"find|ID=1|0|-1"}, "E3251"},
        {"filter equal", kClient, "", {"filter|NAME='b'", "count", "next", "next"}, "2 2 4 EOF"},
        {"filter and", kClient, "", {"filter|ID>1 AND ID<4", "count", "last"}, "2 2 3"},
        {"filter or", kClient, "", {"filter|ID=1 OR ID=4", "count", "last", "prev"}, "1 2 4 1"},
        {"filter nothing", kClient, "", {"filter|ID=9", "count", "bof", "eof", "first"}, "EMPTY 0 True True E3021"},
        {"filter cleared", kClient, "", {"filter|ID=4", "filter|", "count"}, "4 1 4"},
        {"filter then find", kClient, "", {"filter|NAME='b'", "find|ID=4", "first", "find|ID=3"}, "2 4 2 EOF"},
        {"filter unknown column", kClient, "", {"filter|NOPE=1"}, "E3265"},
    };
    for (const NavigationCase& c : cases) {
        SCOPED_TRACE(c.situation);
        com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
        rs->SetCursorLocation(c.cursor == kClient ? ado::adUseClient : ado::adUseServer);
        const int32_t type = c.cursor == kStream   ? ado::adOpenForwardOnly
                             : c.cursor == kStatic ? ado::adOpenStatic
                                                   : ado::adOpenKeyset;
        rs->Open("SELECT * FROM " + table + c.where + " ORDER BY ID", connection_.Get(), type,
                 c.cursor == kClient ? ado::adLockOptimistic : ado::adLockReadOnly);
        EXPECT_EQ(ado_test::Script(*connection_, rs).Run(c.steps), c.answers);
        rs->Close();
    }
}

struct WriteCase {
    const char* situation;
    const char* columns;
    Rows seed;
    const char* query;  // %T: the table
    Steps steps;        // on the recordset of the query
    Rows seen;          // by another connection afterwards
};

TEST_P(Contract, WritesRowsThroughToTheTable) {
    const char* keyed = "ID INT PRIMARY KEY, NAME VARCHAR(20)";
    const char* keyless = "ID INT, NAME VARCHAR(20), NOTE VARCHAR(20)";
    const Rows ab = {"1, 'a'", "2, 'b'"};
    const char* ordered = "SELECT ID, NAME FROM %T ORDER BY ID";
    const Steps addThenEdit = {"addnew", "set|ID|2", "set|NAME|'b'", "update", "set|NAME|'c'", "update"};
    const std::vector<WriteCase> cases = {
        {"key among the columns", keyed, ab, ordered, {"next", "set|NAME|'z'", "update"}, {"1|'a'", "2|'z'"}},
        {"key left out of the query", keyed, {"1, 'a'", "2, 'a'"}, "SELECT NAME FROM %T ORDER BY ID",
         {"next", "set|NAME|'z'", "update"}, {"1|'a'", "2|'z'"}},
        {"key column changed, then another column", keyed, ab, "SELECT * FROM %T ORDER BY ID",
         {"next", "set|ID|5", "update", "set|NAME|'z'", "update"}, {"1|'a'", "5|'z'"}},
        {"no key: row found by its values, Null among them", keyless, {"1, 'a', NULL", "2, 'a', 'x'"},
         "SELECT NAME, NOTE FROM %T ORDER BY ID", {"set|NOTE|'n'", "update"}, {"1|'a'|'n'", "2|'a'|'x'"}},
        {"no key: the same row edited twice", keyless, {"1, 'a', NULL", "2, 'a', 'x'"},
         "SELECT ID, NAME, NOTE FROM %T ORDER BY ID", {"set|NOTE|'n'", "update", "set|NAME|'q'", "update"},
         {"1|'q'|'n'", "2|'a'|'x'"}},
        {"Save writes a pending edit", keyed, ab, ordered, {"set|name|'z'", "save"}, {"1|'z'", "2|'b'"}},
        {"moving writes a pending edit", keyed, ab, ordered, {"set|NAME|'z'", "next"}, {"1|'z'", "2|'b'"}},
        {"Find writes a pending edit", keyed, ab, ordered, {"set|NAME|'z'", "find|ID=2"}, {"1|'z'", "2|'b'"}},
        {"a cancelled edit is not written", keyed, ab, ordered, {"set|NAME|'z'", "cancel", "next"},
         {"1|'a'", "2|'b'"}},
        {"each row's key edited in turn", keyed, ab, ordered,
         {"set|ID|10", "update", "next", "set|ID|11", "update", "next"}, {"10|'a'", "11|'b'"}},
        {"a second AddNew writes the first", keyed, {"1, 'a'"}, "SELECT ID, NAME FROM %T",
         {"addnew", "set|ID|3", "addnew", "set|ID|4", "cancel"}, {"1|'a'", "3|Null"}},
        {"added row, then edited", keyed, {"1, 'a'"}, "SELECT ID, NAME FROM %T", addThenEdit, {"1|'a'", "2|'c'"}},
        {"added row without key, then edited", keyless, {"1, 'a', NULL"}, "SELECT ID, NAME FROM %T", addThenEdit,
         {"1|'a'|Null", "2|'c'|Null"}},
        {"values of each kind", "ID INT PRIMARY KEY, NAME VARCHAR(20), AMOUNT FLOAT, NOTE VARCHAR(20)", {},
         "SELECT * FROM %T",
         {"addnew", "set|ID|7", "set|NAME|'Grüße €'", "set|AMOUNT|2.25", "set|NOTE|Null", "update"},
         {"7|'Grüße €'|2.25|Null"}},
    };
    int number = 0;
    for (const WriteCase& c : cases) {
        SCOPED_TRACE(c.situation);
        std::string table = MakeTable("W" + std::to_string(++number), c.columns, c.seed);
        ado_test::Script script(*connection_);
        Steps steps = WithTable({std::string("open|") + c.query}, table);
        steps.insert(steps.end(), c.steps.begin(), c.steps.end());
        const std::string answers = script.Run(steps);
        EXPECT_FALSE(ado_test::Raised(answers)) << answers;
        EXPECT_EQ(SeenByOther(table), c.seen);
        script.Current().Close();
    }
}

struct TransactionCase {
    const char* situation;
    Steps steps;  // on the connection; "seen" answers what another one reads
    std::string answers;
    Rows seen;
};

TEST_P(Contract, TransactionsCommitAndRollBack) {
    const std::string insert = "exec|INSERT INTO %T VALUES ";
    const std::string failed = "E" + std::to_string(ado::adErrCommandFailed);
    const std::vector<TransactionCase> cases = {
        {"commit keeps the work", {"begin", insert + "(2, 'b')", "seen", "commit"}, "1 1|'a'", {"1|'a'", "2|'b'"}},
        {"rollback discards statements", {"begin", insert + "(2, 'b')", "rollback"}, "1", {"1|'a'"}},
        {"rollback discards recordset writes",
         {"begin", "open|SELECT ID, NAME FROM %T", "set|NAME|'z'", "addnew", "set|ID|2", "update", "close", "rollback"},
         "1", {"1|'a'"}},
        {"a failed statement leaves the transaction going",
         {"begin", insert + "(2, 'b')", insert + "(1, 'dup')", insert + "(3, 'c')", "commit"}, "1 " + failed,
         {"1|'a'", "2|'b'", "3|'c'"}},
        {"statements commit on their own after a commit", {"begin", "commit", insert + "(2, 'b')"}, "1",
         {"1|'a'", "2|'b'"}},
        {"statements commit on their own after a rollback", {"begin", "rollback", insert + "(2, 'b')"}, "1",
         {"1|'a'", "2|'b'"}},
        {"inside an outer transaction the caller's own work on a savepoint, and a failure takes back itself only",
         {"outer-begin", insert + "(2, 'b')", insert + "(1, 'dup')", "begin", insert + "(3, 'c')", "rollback", "begin",
          "open|SELECT ID, NAME FROM %T", "addnew", "set|ID|4", "update", "close", "commit", "in-transaction", "seen",
          "outer-commit"},
         failed + " 1 1 False 1|'a'", {"1|'a'", "2|'b'", "4|Null"}},
        {"taking an outer transaction back takes the caller's commits with it",
         {"outer-begin", insert + "(2, 'b')", "begin", insert + "(3, 'c')", "commit", "outer-rollback",
          insert + "(5, 'e')"},
         "1", {"1|'a'", "5|'e'"}},
    };
    int number = 0;
    for (const TransactionCase& c : cases) {
        SCOPED_TRACE(c.situation);
        std::string table = MakeTable("X" + std::to_string(++number), "ID INT PRIMARY KEY, NAME VARCHAR(20)", {"1, 'a'"});
        ado_test::Script script(*connection_, {},
                                {{"seen", [&] { return Joined(SeenByOther(table)); }},
                                 {"in-transaction", [&] { return connection_->InTransaction() ? "True" : "False"; }}});
        EXPECT_EQ(script.Run(WithTable(c.steps, table)), c.answers);
        EXPECT_FALSE(connection_->InTransaction());
        EXPECT_FALSE(connection_->InOuterTransaction());
        EXPECT_EQ(SeenByOther(table), c.seen);
    }
}

TEST_P(Contract, FailingStatementReportsTheServersErrors) {
    const std::string keyed = MakeTable("E", "ID INT PRIMARY KEY, NAME VARCHAR(20)", {"1, 'a'"});
    const std::string missing = backend_->Table("NOSUCH");
    const std::vector<std::tuple<const char*, Failure, std::string, std::string>> cases = {
        {"missing table", Failure::kMissingTable, missing, "SELECT * FROM " + missing},
        {"duplicate key", Failure::kDuplicateKey, keyed, "INSERT INTO " + keyed + " VALUES (1, 'b')"},
    };
    for (const auto& [situation, failure, table, statement] : cases) {
        SCOPED_TRACE(situation);
        EXPECT_EQ(ado_test::ErrorOf([&] { connection_->Execute(statement); }), ado::adErrCommandFailed);
        EXPECT_EQ(ado_test::DescribeErrors(*connection_), Rows({backend_->ExpectedError(failure, table)}));
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, Contract,
                         ::testing::Values(BackendFactory{"Sqlite", MakeSqliteBackend},
                                           BackendFactory{"PostgresOdbc", MakePostgresOdbcBackend},
                                           BackendFactory{"SqliteOdbc", MakeSqliteOdbcBackend}),
                         BackendName);

}  // namespace
}  // namespace contract
