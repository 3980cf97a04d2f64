#include "tests/server/scratch_database.h"

#include <unistd.h>

#include <cctype>
#include <cstdlib>
#include <sstream>

#include "platform/automation/basic_error.h"
#include "tests/support/test_host.h"

namespace kdvq::server {

namespace {

// The key of a "key=value" pair as drivers compare it: without the blanks
// around it, in lower case.
std::string KeyOf(const std::string& pair) {
    std::string key = pair.substr(0, pair.find('='));
    size_t first = key.find_first_not_of(' ');
    size_t last = key.find_last_not_of(' ');
    key = first == std::string::npos ? "" : key.substr(first, last - first + 1);
    for (char& c : key) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key;
}

}  // namespace

std::string WithKey(const std::string& connectionString, const std::string& key, const std::string& value) {
    std::string result;
    bool replaced = false;
    std::istringstream pairs(connectionString);
    for (std::string pair; std::getline(pairs, pair, ';');) {
        if (pair.empty()) continue;
        if (KeyOf(pair) == KeyOf(key)) {
            pair = key + "=" + value;
            replaced = true;
        }
        result += pair + ";";
    }
    if (!replaced) result += key + "=" + value + ";";
    return result;
}

std::string ScratchDatabase::SkipReason() {
#ifndef KDVQ_HAVE_ODBC
    return "built without the ODBC provider";
#endif
    const char* connect = std::getenv("KDVQ_PG_CONNECT");
    if (!connect || !*connect) return "KDVQ_PG_CONNECT is not set (scripts/pg-server.sh sets it)";
    return "";
}

ScratchDatabase::ScratchDatabase() : serverConnectionString_(std::getenv("KDVQ_PG_CONNECT")) {
    // Test programs run in parallel: the process id keeps the names apart.
    static int made = 0;
    name_ = "kdvq_server_" + std::to_string(::getpid()) + "_" + std::to_string(++made);
    connectionString_ = WithKey(serverConnectionString_, "Database", name_);
    com::ComPtr<ado::Connection> server = ado::NewConnection();
    server->Open("odbc:" + serverConnectionString_);
    server->Execute("CREATE DATABASE " + name_);
    server->Close();
}

ScratchDatabase::~ScratchDatabase() {
    try {
        com::ComPtr<ado::Connection> server = ado::NewConnection();
        server->Open("odbc:" + serverConnectionString_);
        // FORCE: a runner killed mid-test may have left a session behind.
        server->Execute("DROP DATABASE IF EXISTS " + name_ + " WITH (FORCE)");
        server->Close();
    } catch (const automation::BasicError&) {
        // A server already gone leaves nothing to tidy.
    }
}

com::ComPtr<ado::Connection> ScratchDatabase::Connect() const {
    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    connection->Open("odbc:" + connectionString_);
    return connection;
}

void ScratchDatabase::Load(const std::string& script) {
    com::ComPtr<ado::Connection> connection = Connect();
    connection->Execute(script);
    connection->Close();
}

std::vector<std::string> ScratchDatabase::Rows(const std::string& sql) const {
    com::ComPtr<ado::Connection> connection = Connect();
    std::vector<std::string> rows = testing::QueryRows(connection.Get(), sql);
    connection->Close();
    return rows;
}

}  // namespace kdvq::server
