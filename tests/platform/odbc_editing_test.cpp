// Editable recordsets over the ODBC drivers: a row that another connection
// changed in the meantime.
#ifdef KDVQ_HAVE_ODBC
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/platform/contract_backend.h"

namespace contract {
namespace {

class OdbcEditing : public BackendTest {};

TEST_P(OdbcEditing, RowChangedByAnotherConnectionCannotBeLocated) {
    const std::string table = backend_->Table("A");
    connection_->Execute("CREATE TABLE " + table + " (ID INT, NAME VARCHAR(20))");
    connection_->Execute("INSERT INTO " + table + " VALUES (1, 'a')");
    com::ComPtr<ado::Recordset> rs = ado_test::OpenEditable(connection_.Get(), "SELECT ID, NAME FROM " + table);
    backend_->Connect()->Execute("UPDATE " + table + " SET NAME = 'other'");
    rs->Set("NAME", "mine");
    EXPECT_EQ(ado_test::ErrorOf([&] { rs->Update(); }), ado::adErrCommandFailed);
    EXPECT_EQ(ado_test::DescribeErrors(*connection_),
              std::vector<std::string>({std::to_string(ado::adErrCommandFailed) +
                                        "|0|HY000|Row cannot be located for updating. Some values may have been "
                                        "changed since it was last read.|" +
                                        connection_->Provider()}));
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
