#include "host/repository_connection.h"

#include "host/bad_input.h"
#include "host/call_counts.h"
#include "host/fault_injection.h"
#include "host/repository_check.h"
#include "platform/automation/basic_error.h"

namespace kdhost {

namespace {

std::string FailureText() {
    try {
        throw;
    } catch (const automation::BasicError& e) {
        return e.Description();
    } catch (const std::exception& e) {
        return e.what();
    }
}

void CheckServerRepository(ado::Connection* connection, const Target& target, const std::string& prefix) {
    for (const char* const* table = RepositoryMarkerTables(); *table; ++table) {
        if (!TableReadable(connection, prefix + *table)) {
            throw BadInput(target.text + ": not a repository (it has no table " + prefix + *table + ")");
        }
    }
}

com::ComPtr<ado::Connection> Open(const Target& target, const std::string& prefix, bool readOnly, bool testHook) {
    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    try {
        bool hooked = testHook && OpenWithTestHook(connection.Get(), target, readOnly);
        // A connection that may write counts its calls for the live status line.
        if (!hooked && readOnly) connection->Open(target.ConnectionString(true));
        if (!hooked && !readOnly) OpenCounted(connection.Get(), target);
    } catch (...) {
        // The driver's message may repeat the connection string.
        throw BadInput(target.text + ": cannot be opened: " + target.Shown(FailureText()));
    }
    if (!target.IsFile()) CheckServerRepository(connection.Get(), target, prefix);
    return connection;
}

}  // namespace

com::ComPtr<ado::Connection> OpenRepository(const Target& target, const std::string& prefix, bool readOnly) {
    return Open(target, prefix, readOnly, true);
}

com::ComPtr<ado::Connection> OpenRepositoryForChecks(const Target& target, const std::string& prefix) {
    return Open(target, prefix, true, false);
}

bool TableReadable(ado::Connection* connection, const std::string& table) {
    try {
        com::ComPtr<ado::Recordset> rows = ado::NewRecordset();
        rows->Open("SELECT * FROM " + table + " WHERE 1=0", connection, ado::adOpenForwardOnly, ado::adLockReadOnly);
        rows->Close();
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace kdhost
