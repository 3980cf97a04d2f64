#include "host/repository_connection.h"

#include "host/bad_input.h"
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
        try {
            com::ComPtr<ado::Recordset> rows = ado::NewRecordset();
            rows->Open("SELECT * FROM " + prefix + *table + " WHERE 1=0", connection, ado::adOpenForwardOnly,
                       ado::adLockReadOnly);
            rows->Close();
        } catch (...) {
            throw BadInput(target.text + ": not a repository (it has no table " + prefix + *table + ")");
        }
    }
}

}  // namespace

com::ComPtr<ado::Connection> OpenRepository(const Target& target, const std::string& prefix, bool readOnly) {
    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    try {
        if (!OpenWithTestHook(connection.Get(), target, readOnly)) connection->Open(target.ConnectionString(readOnly));
    } catch (...) {
        throw BadInput(target.text + ": cannot be opened: " + FailureText());
    }
    if (!target.IsFile()) CheckServerRepository(connection.Get(), target, prefix);
    return connection;
}

}  // namespace kdhost
