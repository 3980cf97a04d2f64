// The data-access contract every provider keeps, run against each backend
// (contract_backends.cpp): navigation, Find and Filter scripts, rows and
// pending edits written through to the base table, transactions, the
// Errors of a failing statement and the Provider text.
#include <gtest/gtest.h>

#include <functional>

#include "tests/platform/ado_test_util.h"
#include "tests/platform/contract_backend.h"
#include "tests/support/test_host.h"

namespace contract {
namespace {

using automation::Variant;
using Rows = std::vector<std::string>;

std::string WithTable(std::string text, const std::string& table) {
    for (size_t at = text.find("%T"); at != std::string::npos; at = text.find("%T", at + table.size()))
        text.replace(at, 2, table);
    return text;
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

// A step of a navigation script and what it answers: the current ID (or
// BOF / EOF / EMPTY), a count, a flag, a value or the whole row.
std::string Apply(ado::Recordset& rs, const std::string& step) {
    std::vector<std::string> p;
    for (size_t from = 0, bar = 0; bar != std::string::npos; from = bar + 1) {
        bar = step.find('|', from);
        p.push_back(step.substr(from, bar == std::string::npos ? bar : bar - from));
    }
    const std::string& verb = p[0];
    if (verb == "first") rs.MoveFirst();
    else if (verb == "next") rs.MoveNext();
    else if (verb == "prev") rs.MovePrevious();
    else if (verb == "last") rs.MoveLast();
    else if (verb == "count") return std::to_string(rs.RecordCount());
    else if (verb == "bof") return rs.BOF() ? "True" : "False";
    else if (verb == "eof") return rs.EOF() ? "True" : "False";
    else if (verb == "get") return rs.Get(p[1]).Describe();
    else if (verb == "filter") rs.SetFilter(p.size() > 1 ? p[1] : "");
    else if (verb == "find")
        rs.Find(p[1], p.size() > 2 ? std::stoi(p[2]) : 0, p.size() > 3 ? std::stoi(p[3]) : ado::adSearchForward,
                p.size() > 4 ? Variant(std::stoi(p[4])) : Variant());
    else if (verb == "row") {
        std::string row;
        for (int32_t i = 0; i < rs.FieldCount(); ++i) row += (i ? "|" : "") + rs.Fields(i).Value().Describe();
        return row;
    } else return "unknown step " + verb;
    if (rs.BOF() && rs.EOF()) return "EMPTY";
    return rs.BOF() ? "BOF" : rs.EOF() ? "EOF" : rs.Get("ID").Describe();
}

enum Cursor { kStream, kStatic, kClient };

struct Script {
    const char* name;
    Cursor cursor;
    const char* where;
    std::vector<std::string> steps;
    const char* answers;  // E<number>: the error a step raised
};

TEST_P(Contract, AnswersNavigationScripts) {
    const std::string table = MakeTable("N", "ID INT PRIMARY KEY, NAME VARCHAR(20), AMOUNT FLOAT, NOTE VARCHAR(20)",
                                        {"1, 'a', 1.5, NULL", "2, 'b', NULL, 'x'", "3, 'O''Hara', 2.5, 'y'",
                                         "4, 'B', 3, 'z'"});
    const char* none = " WHERE ID > 9";
    const std::vector<Script> scripts = {
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
    for (const Script& s : scripts) {
        SCOPED_TRACE(s.name);
        com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
        rs->SetCursorLocation(s.cursor == kClient ? ado::adUseClient : ado::adUseServer);
        rs->Open("SELECT * FROM " + table + s.where + " ORDER BY ID", connection_.Get(),
                 s.cursor == kStream ? ado::adOpenForwardOnly : s.cursor == kStatic ? ado::adOpenStatic : ado::adOpenKeyset,
                 s.cursor == kClient ? ado::adLockOptimistic : ado::adLockReadOnly);
        std::string answers;
        for (const std::string& step : s.steps) {
            std::string answer;
            const int32_t error = ado_test::ErrorOf([&] { answer = Apply(*rs, step); });
            answers += (answers.empty() ? "" : " ") + (error ? "E" + std::to_string(error) : answer);
        }
        EXPECT_EQ(answers, s.answers);
        rs->Close();
    }
}

struct WriteCase {
    const char* situation;
    const char* columns;
    Rows seed;
    const char* query;  // %T: the table
    std::function<void(ado::Recordset&)> edit;
    Rows seen;          // by another connection afterwards
};

TEST_P(Contract, WritesRowsThroughToTheTable) {
    const char* keyed = "ID INT PRIMARY KEY, NAME VARCHAR(20)";
    const char* keyless = "ID INT, NAME VARCHAR(20), NOTE VARCHAR(20)";
    const auto setName = [](ado::Recordset& rs) {
        rs.MoveNext();
        rs.Set("NAME", "z");
        rs.Update();
    };
    const auto addThenEdit = [](ado::Recordset& rs) {
        rs.AddNew();
        rs.Set("ID", 2);
        rs.Set("NAME", "b");
        rs.Update();
        rs.Set("NAME", "c");
        rs.Update();
    };
    const std::vector<WriteCase> cases = {
        {"key among the columns", keyed, {"1, 'a'", "2, 'b'"}, "SELECT ID, NAME FROM %T ORDER BY ID", setName,
         {"1|'a'", "2|'z'"}},
        {"key left out of the query", keyed, {"1, 'a'", "2, 'a'"}, "SELECT NAME FROM %T ORDER BY ID", setName,
         {"1|'a'", "2|'z'"}},
        {"key column changed, then another column", keyed, {"1, 'a'", "2, 'b'"}, "SELECT * FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.MoveNext();
             rs.Set("ID", 5);
             rs.Update();
             rs.Set("NAME", "z");
             rs.Update();
         },
         {"1|'a'", "5|'z'"}},
        {"no key: row found by its values, Null among them", keyless, {"1, 'a', NULL", "2, 'a', 'x'"},
         "SELECT NAME, NOTE FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.Set("NOTE", "n");
             rs.Update();
         },
         {"1|'a'|'n'", "2|'a'|'x'"}},
        {"no key: the same row edited twice", keyless, {"1, 'a', NULL", "2, 'a', 'x'"},
         "SELECT ID, NAME, NOTE FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.Set("NOTE", "n");
             rs.Update();
             rs.Set("NAME", "q");
             rs.Update();
         },
         {"1|'q'|'n'", "2|'a'|'x'"}},
        {"Save writes a pending edit", keyed, {"1, 'a'", "2, 'b'"}, "SELECT ID, NAME FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.Set("name", "z");
             rs.Save();
         },
         {"1|'z'", "2|'b'"}},
        {"moving writes a pending edit", keyed, {"1, 'a'", "2, 'b'"}, "SELECT ID, NAME FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.Set("NAME", "z");
             rs.MoveNext();
         },
         {"1|'z'", "2|'b'"}},
        {"Find writes a pending edit", keyed, {"1, 'a'", "2, 'b'"}, "SELECT ID, NAME FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.Set("NAME", "z");
             rs.Find("ID=2");
         },
         {"1|'z'", "2|'b'"}},
        {"a cancelled edit is not written", keyed, {"1, 'a'", "2, 'b'"}, "SELECT ID, NAME FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             rs.Set("NAME", "z");
             rs.CancelUpdate();
             rs.MoveNext();
         },
         {"1|'a'", "2|'b'"}},
        {"each row's key edited in a loop", keyed, {"1, 'a'", "2, 'b'"}, "SELECT ID, NAME FROM %T ORDER BY ID",
         [](ado::Recordset& rs) {
             for (int32_t n = 10; !rs.EOF(); ++n, rs.MoveNext()) {
                 rs.Set("ID", n);
                 rs.Update();
             }
         },
         {"10|'a'", "11|'b'"}},
        {"a second AddNew writes the first", keyed, {"1, 'a'"}, "SELECT ID, NAME FROM %T",
         [](ado::Recordset& rs) {
             rs.AddNew();
             rs.Set("ID", 3);
             rs.AddNew();
             rs.Set("ID", 4);
             rs.CancelUpdate();
         },
         {"1|'a'", "3|Null"}},
        {"added row, then edited", keyed, {"1, 'a'"}, "SELECT ID, NAME FROM %T", addThenEdit, {"1|'a'", "2|'c'"}},
        {"added row without key, then edited", keyless, {"1, 'a', NULL"}, "SELECT ID, NAME FROM %T", addThenEdit,
         {"1|'a'|Null", "2|'c'|Null"}},
        {"values of each kind", "ID INT PRIMARY KEY, NAME VARCHAR(20), AMOUNT FLOAT, NOTE VARCHAR(20)", {},
         "SELECT * FROM %T",
         [](ado::Recordset& rs) {
             rs.AddNew();
             rs.Set("ID", Variant::Integer(7));
             rs.Set("NAME", "Grüße €");
             rs.Set("AMOUNT", 2.25);
             rs.Set("NOTE", Variant::Null());
             rs.Update();
         },
         {"7|'Grüße €'|2.25|Null"}},
    };
    int number = 0;
    for (const WriteCase& c : cases) {
        SCOPED_TRACE(c.situation);
        std::string table = MakeTable("W" + std::to_string(++number), c.columns, c.seed);
        com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), WithTable(c.query, table));
        c.edit(*rs);
        EXPECT_EQ(SeenByOther(table), c.seen);
        rs->Close();
    }
}

struct TransactionCase {
    const char* situation;
    // Runs on the connection; seen() is what the other connection reads.
    std::function<void(ado::Connection&, const std::string& table, const std::function<Rows()>& seen)> steps;
    Rows seen;
};

TEST_P(Contract, TransactionsCommitAndRollBack) {
    const auto insert = [](ado::Connection& c, const std::string& table, const char* values) {
        c.Execute("INSERT INTO " + table + " VALUES (" + values + ")");
    };
    const std::vector<TransactionCase> cases = {
        {"commit keeps the work",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>& seen) {
             c.BeginTrans();
             insert(c, t, "2, 'b'");
             EXPECT_EQ(seen(), Rows({"1|'a'"}));  // not before the commit
             c.CommitTrans();
         },
         {"1|'a'", "2|'b'"}},
        {"rollback discards statements",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>&) {
             c.BeginTrans();
             insert(c, t, "2, 'b'");
             c.RollbackTrans();
         },
         {"1|'a'"}},
        {"rollback discards recordset writes",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>&) {
             c.BeginTrans();
             com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(&c, "SELECT ID, NAME FROM " + t);
             rs->Set("NAME", "z");
             rs->AddNew();
             rs->Set("ID", 2);
             rs->Update();
             rs->Close();
             c.RollbackTrans();
         },
         {"1|'a'"}},
        {"a failed statement leaves the transaction going",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>&) {
             c.BeginTrans();
             insert(c, t, "2, 'b'");
             EXPECT_NE(ado_test::ErrorOf([&] { insert(c, t, "1, 'dup'"); }), 0);
             insert(c, t, "3, 'c'");
             c.CommitTrans();
         },
         {"1|'a'", "2|'b'", "3|'c'"}},
        {"statements commit on their own after a commit",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>&) {
             c.BeginTrans();
             c.CommitTrans();
             insert(c, t, "2, 'b'");
         },
         {"1|'a'", "2|'b'"}},
        {"statements commit on their own after a rollback",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>&) {
             c.BeginTrans();
             c.RollbackTrans();
             insert(c, t, "2, 'b'");
         },
         {"1|'a'", "2|'b'"}},
        {"inside an outer transaction the caller's own work on a savepoint, and a failure takes back itself only",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>& seen) {
             c.BeginOuterTransaction();
             insert(c, t, "2, 'b'");
             EXPECT_NE(ado_test::ErrorOf([&] { insert(c, t, "1, 'dup'"); }), 0);
             EXPECT_EQ(c.BeginTrans(), 1);
             insert(c, t, "3, 'c'");
             c.RollbackTrans();
             EXPECT_EQ(c.BeginTrans(), 1);
             com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(&c, "SELECT ID, NAME FROM " + t);
             rs->AddNew();
             rs->Set("ID", 4);
             rs->Update();
             rs->Close();
             c.CommitTrans();
             EXPECT_FALSE(c.InTransaction());
             EXPECT_EQ(seen(), Rows({"1|'a'"}));  // nothing before the outer commit
             c.CommitOuterTransaction();
         },
         {"1|'a'", "2|'b'", "4|Null"}},
        {"taking an outer transaction back takes the caller's commits with it",
         [&](ado::Connection& c, const std::string& t, const std::function<Rows()>&) {
             c.BeginOuterTransaction();
             insert(c, t, "2, 'b'");
             c.BeginTrans();
             insert(c, t, "3, 'c'");
             c.CommitTrans();
             c.RollbackOuterTransaction();
             insert(c, t, "5, 'e'");  // on its own again
         },
         {"1|'a'", "5|'e'"}},
    };
    int number = 0;
    for (const TransactionCase& c : cases) {
        SCOPED_TRACE(c.situation);
        std::string table = MakeTable("X" + std::to_string(++number), "ID INT PRIMARY KEY, NAME VARCHAR(20)", {"1, 'a'"});
        c.steps(*connection_, table, [&] { return SeenByOther(table); });
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
