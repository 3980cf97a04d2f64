// Editable recordsets over the ODBC drivers: which queries can be written,
// and a row that another connection changed in the meantime.
#ifdef KDVQ_HAVE_ODBC
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/platform/contract_backend.h"

namespace contract {
namespace {

class OdbcEditing : public BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        for (const char* base : {"A", "B"}) {
            tables_.push_back(backend_->Table(base));
            connection_->Execute("CREATE TABLE " + tables_.back() + " (ID INT, NAME VARCHAR(20))");
            connection_->Execute("INSERT INTO " + tables_.back() + " VALUES (1, 'a')");
        }
    }

    std::vector<std::string> tables_;
};

TEST_P(OdbcEditing, QueriesOverSeveralTablesOrComputedColumnsStayReadOnly) {
    const std::string a = tables_[0], b = tables_[1];
    const std::vector<std::pair<const char*, std::string>> cases = {
        {"two tables", "SELECT a.ID, b.NAME FROM " + a + " a, " + b + " b WHERE a.ID = b.ID"},
        {"computed column named like a table column", "SELECT ID, NAME || 'x' AS NAME FROM " + a},
        {"aggregate named like a table column", "SELECT MAX(ID) AS ID FROM " + a},
        {"distinct rows", "SELECT DISTINCT NAME FROM " + a},
    };
    for (const auto& [situation, query] : cases) {
        SCOPED_TRACE(situation);
        com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), query);
        EXPECT_EQ(ado_test::ErrorOf([&] { rs->Fields(0).SetValue(5); }), ado::adErrFeatureNotAvailable);
        EXPECT_FALSE(rs->EOF());
        rs->Close();
    }
}

TEST_P(OdbcEditing, RowChangedByAnotherConnectionCannotBeLocated) {
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), "SELECT ID, NAME FROM " + tables_[0]);
    backend_->Connect()->Execute("UPDATE " + tables_[0] + " SET NAME = 'other'");
    rs->Set("NAME", "mine");
    EXPECT_EQ(ado_test::ErrorOf([&] { rs->Update(); }), ado::adErrCommandFailed);
    EXPECT_EQ(ado_test::DescribeErrors(*connection_),
              std::vector<std::string>({std::to_string(ado::adErrCommandFailed) +
                                        "|0|HY000|Row cannot be located for updating. Some values may have been "
                                        "changed since it was last read.|" +
                                        backend_->ProviderText()}));
    rs->CancelUpdate();
    rs->Close();
}

INSTANTIATE_TEST_SUITE_P(Drivers, OdbcEditing,
                         ::testing::Values(BackendFactory{"PostgresOdbc", MakePostgresOdbcBackend},
                                           BackendFactory{"SqliteOdbc", MakeSqliteOdbcBackend}),
                         BackendName);

}  // namespace
}  // namespace contract
#endif  // KDVQ_HAVE_ODBC
