// How server column types read as Variants through ODBC, and that each
// value written back through a recordset reads back the same. Runs on the
// PostgreSQL test server (scripts/pg-server.sh), whose tinyint and datetime
// are the domains standing in for the SQL Server types.
#ifdef KDVQ_HAVE_ODBC
#include <gtest/gtest.h>

#include "platform/automation/basic_date.h"
#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"
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
        case automation::vtString: {
            // A long run of one letter in short.
            const std::string& text = v.AsString();
            if (text.size() > 40 && text.find_first_not_of(text[0]) == std::string::npos)
                return "String of " + std::to_string(text.size()) + " '" + text[0] + "'";
            return "String '" + text + "'";
        }
        case automation::vtBoolean: return "Boolean " + v.CStr();
        case automation::vtDate: return "Date " + automation::FormatBasicDate(v.CDate());
        default: return "type " + std::to_string(v.Type()) + " " + v.Describe();
    }
}

// Each case, "column type; literal", answers how the value reads.
TEST(OdbcValues, ServerTypesReadAndWriteBack) {
    std::unique_ptr<Backend> backend = MakePostgresOdbcBackend();
    std::string reason = backend->SkipReason();
    if (!reason.empty()) GTEST_SKIP() << reason;
    com::ComPtr<ado::Connection> connection = backend->Connect();
    int number = 0;
    answer_file::ExpectAnswers("server types", [&](const std::string& input) {
        const std::vector<std::string> fields = answer_file::Split(input, "; ");
        std::string table = backend->Table("V" + std::to_string(++number));
        connection->Execute("CREATE TABLE " + table + " (ID INT PRIMARY KEY, VAL " + fields[0] + ")");
        connection->Execute("INSERT INTO " + table + " VALUES (1, " + fields[1] + ")");
        com::ComPtr<ado::Recordset> rs =
            ado_test::OpenEditable(connection.Get(), "SELECT ID, VAL FROM " + table + " ORDER BY ID");
        Variant read = rs->Get("VAL");
        rs->AddNew();
        rs->Set("ID", 2);
        rs->Set("VAL", read);
        rs->Update();
        rs->Close();
        rs = ado_test::OpenStream(connection.Get(), "SELECT VAL FROM " + table + " WHERE ID = 2");
        EXPECT_EQ(rs->Get("VAL"), read);  // exactly, fractions of seconds included
        return Typed(read);
    });
}

}  // namespace
}  // namespace contract
#endif  // KDVQ_HAVE_ODBC
