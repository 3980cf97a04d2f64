// The data-access contract every provider keeps, run against each backend
// (contract_*_backend.cpp): navigation, Find, Filter, rows written through
// to the base table, transactions, the Errors of a failing statement and
// the Provider text.
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

    // The four-column table most cases read.
    std::string MakeSampleTable() {
        return MakeTable("T", "ID INT PRIMARY KEY, NAME VARCHAR(20), AMOUNT FLOAT, NOTE VARCHAR(20)",
                         {"1, 'a', 1.5, NULL", "2, 'b', 2.5, 'x'", "3, 'c', 3.5, 'y'"});
    }

    // What another connection reads from the table.
    Rows SeenByOther(const std::string& table) {
        return kdvq::testing::QueryRows(other_.Get(), "SELECT * FROM " + table + " ORDER BY ID");
    }

    com::ComPtr<ado::Connection> other_;
};

// The rows from the current one to the end, each as QueryRows writes it.
Rows ReadToEnd(ado::Recordset& rs) {
    Rows rows;
    for (; !rs.EOF(); rs.MoveNext()) {
        std::string row;
        for (int32_t i = 0; i < rs.FieldCount(); ++i) row += (i ? "|" : "") + rs.Fields(i).Value().Describe();
        rows.push_back(row);
    }
    return rows;
}

TEST_P(Contract, ProviderTextNamesTheServer) { EXPECT_EQ(connection_->Provider(), backend_->ProviderText()); }

struct NavigationCase {
    const char* situation;
    int32_t location, cursorType, lockType;
    const char* where;
    Rows rows;
    int32_t recordCount;
};

TEST_P(Contract, NavigatesEachKindOfCursor) {
    const std::string table = MakeSampleTable();
    const Rows all = {"1|'a'|1.5|Null", "2|'b'|2.5|'x'", "3|'c'|3.5|'y'"};
    const std::vector<NavigationCase> cases = {
        {"server forward-only streams", ado::adUseServer, ado::adOpenForwardOnly, ado::adLockReadOnly, "", all, -1},
        {"server static reads all", ado::adUseServer, ado::adOpenStatic, ado::adLockReadOnly, "", all, 3},
        {"client keyset reads all", ado::adUseClient, ado::adOpenKeyset, ado::adLockOptimistic, "", all, 3},
        {"empty stream", ado::adUseServer, ado::adOpenForwardOnly, ado::adLockReadOnly, " WHERE ID > 9", {}, -1},
        {"empty client recordset", ado::adUseClient, ado::adOpenKeyset, ado::adLockOptimistic, " WHERE ID > 9", {}, 0},
    };
    for (const NavigationCase& c : cases) {
        SCOPED_TRACE(c.situation);
        com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
        rs->SetCursorLocation(c.location);
        rs->Open("SELECT ID, NAME, AMOUNT, NOTE FROM " + table + c.where + " ORDER BY ID", connection_.Get(),
                 c.cursorType, c.lockType);
        EXPECT_EQ(rs->RecordCount(), c.recordCount);
        EXPECT_EQ(rs->BOF(), c.rows.empty());
        EXPECT_EQ(ReadToEnd(*rs), c.rows);
        EXPECT_TRUE(rs->EOF());
        if (!c.rows.empty()) {
            rs->MoveFirst();  // a stream runs its query again
            EXPECT_EQ(ReadToEnd(*rs), c.rows);
        }
        rs->Close();
    }
}

struct FindCase {
    const char* criteria;
    int32_t skip;
    int32_t direction;
    bool fromLast;
    const char* found;  // the found row's ID, or "EOF"/"BOF"
};

TEST_P(Contract, FindsRowsByCriteria) {
    com::ComPtr<ado::Recordset> rs =
        ado_test::OpenEditable(connection_.Get(), "SELECT * FROM " + MakeSampleTable() + " ORDER BY ID");
    const std::vector<FindCase> cases = {
        {"NAME = 'b'", 0, ado::adSearchForward, false, "2"},
        {"AMOUNT > 2", 1, ado::adSearchForward, false, "2"},
        {"ID < 3", 0, ado::adSearchBackward, true, "2"},
        {"NOTE = 'q'", 0, ado::adSearchBackward, true, "BOF"},
    };
    for (const FindCase& c : cases) {
        SCOPED_TRACE(c.criteria);
        if (c.fromLast)
            rs->MoveLast();
        else
            rs->MoveFirst();
        rs->Find(c.criteria, c.skip, c.direction);
        std::string found = rs->EOF() ? "EOF" : rs->BOF() ? "BOF" : rs->Get("ID").CStr();
        EXPECT_EQ(found, c.found);
    }
}

TEST_P(Contract, FiltersRows) {
    com::ComPtr<ado::Recordset> rs =
        ado_test::OpenEditable(connection_.Get(), "SELECT ID FROM " + MakeSampleTable() + " ORDER BY ID");
    const std::vector<std::pair<std::string, Rows>> cases = {
        {"ID >= 2", {"2", "3"}},
        {"ID = 1 OR ID = 3", {"1", "3"}},
        {"", {"1", "2", "3"}},
    };
    for (const auto& [filter, rows] : cases) {
        SCOPED_TRACE(filter);
        rs->SetFilter(filter);
        EXPECT_EQ(rs->RecordCount(), static_cast<int32_t>(rows.size()));
        EXPECT_EQ(ReadToEnd(*rs), rows);
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
