// Temporary directories and SQLite set-up for tests.
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "tests/support/test_host.h"

namespace kdvq::testing {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kdvq-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a temporary directory");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

com::ComPtr<ado::Connection> OpenSqlite(const std::string& path) {
    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    connection->Open("sqlite:" + path + "?mode=create");
    return connection;
}

namespace {

std::string Trimmed(const std::string& text) {
    const char* blanks = " \t\r\n";
    size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return "";
    size_t last = text.find_last_not_of(blanks);
    return text.substr(first, last - first + 1);
}

}  // namespace

void ExecAll(ado::Connection* connection, const std::string& statements) {
    size_t start = 0;
    while (start <= statements.size()) {
        size_t end = statements.find(";\n", start);
        if (end == std::string::npos) end = statements.size();
        std::string statement = Trimmed(statements.substr(start, end - start));
        if (!statement.empty() && statement.back() == ';') statement.pop_back();
        if (!statement.empty()) connection->Execute(statement);
        start = end + 2;
    }
}

std::vector<std::string> QueryRows(ado::Connection* connection, const std::string& sql) {
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    rs->Open(sql, connection, ado::adOpenForwardOnly, ado::adLockReadOnly);
    std::vector<std::string> rows;
    while (!rs->EOF()) {
        std::string row;
        for (int32_t i = 0; i < rs->FieldCount(); ++i) {
            if (i > 0) row += "|";
            row += rs->Fields(i).Value().Describe();
        }
        rows.push_back(row);
        rs->MoveNext();
    }
    rs->Close();
    return rows;
}

}  // namespace kdvq::testing
