// How server column types read as Variants through ODBC, and that each
// value written back through a recordset reads back the same. Runs on the
// PostgreSQL test server (scripts/pg-server.sh), whose tinyint and datetime
// are the domains standing in for the SQL Server types.
#ifdef KDVQ_HAVE_ODBC
#include <gtest/gtest.h>

#include "platform/automation/basic_date.h"
#include "tests/platform/ado_test_util.h"
#include "tests/platform/contract_backend.h"

namespace contract {
namespace {

using automation::Variant;

// The Variant's type and value, dates written out.
std::string Typed(const Variant& v) {
    switch (v.Type()) {
        case automation::vtNull: return "Null";
        case automation::vtLong: return "Long " + v.CStr();
        case automation::vtDouble: return "Double " + v.CStr();
        case automation::vtString: return "String '" + v.AsString() + "'";
        case automation::vtBoolean: return "Boolean " + v.CStr();
        case automation::vtDate: return "Date " + automation::FormatBasicDate(v.CDate());
        default: return "type " + std::to_string(v.Type()) + " " + v.Describe();
    }
}

struct ValueCase {
    const char* type;
    std::string literal;
    std::string read;
};

TEST(OdbcValues, ServerTypesReadAndWriteBack) {
    std::unique_ptr<Backend> backend = MakePostgresOdbcBackend();
    std::string reason = backend->SkipReason();
    if (!reason.empty()) GTEST_SKIP() << reason;
    com::ComPtr<ado::Connection> connection = backend->Connect();
    const std::string longText(5000, 'x');
    const std::vector<ValueCase> cases = {
        {"INT", "7", "Long 7"},
        {"INT", "NULL", "Null"},
        {"SMALLINT", "-3", "Long -3"},
        {"TINYINT", "3", "Long 3"},
        {"BIGINT", "-5", "Long -5"},
        {"BIGINT", "9999999999", "Double 9999999999"},
        {"NUMERIC(38)", "123", "Long 123"},
        {"NUMERIC(38)", "12345678901", "Double 12345678901"},
        {"NUMERIC(10,2)", "2", "Double 2"},
        {"NUMERIC(10,2)", "1.25", "Double 1.25"},
        {"FLOAT", "2.5", "Double 2.5"},
        {"REAL", "0.5", "Double 0.5"},
        {"VARCHAR(20)", "'Grüße €'", "String 'Grüße €'"},
        {"VARCHAR(20)", "''", "String ''"},
        {"CHAR(3)", "'ab'", "String 'ab '"},
        {"TEXT", "'" + longText + "'", "String '" + longText + "'"},
        {"DATETIME", "'2024-02-29 13:45:30'", "Date 2024-02-29 13:45:30"},
        {"TIMESTAMP", "'2024-01-02 03:04:05.123456'", "Date 2024-01-02 03:04:05"},
        {"TIMESTAMP", "'1899-12-29 06:00:00'", "Date 1899-12-29 06:00:00"},
        {"DATE", "'2024-03-01'", "Date 2024-03-01"},
    };
    int number = 0;
    for (const ValueCase& c : cases) {
        SCOPED_TRACE(std::string(c.type) + " " + c.literal.substr(0, 40));
        std::string table = backend->Table("V" + std::to_string(++number));
        connection->Execute("CREATE TABLE " + table + " (ID INT PRIMARY KEY, VAL " + c.type + ")");
        connection->Execute("INSERT INTO " + table + " VALUES (1, " + c.literal + ")");
        com::ComPtr<ado::Recordset> rs =
            ado_test::OpenEditable(connection.Get(), "SELECT ID, VAL FROM " + table + " ORDER BY ID");
        Variant read = rs->Get("VAL");
        EXPECT_EQ(Typed(read), c.read);
        rs->AddNew();
        rs->Set("ID", 2);
        rs->Set("VAL", read);
        rs->Update();
        rs->Close();
        rs = ado_test::OpenStream(connection.Get(), "SELECT VAL FROM " + table + " WHERE ID = 2");
        EXPECT_EQ(rs->Get("VAL"), read);  // exactly, fractions of seconds included
    }
}

}  // namespace
}  // namespace contract
#endif  // KDVQ_HAVE_ODBC
