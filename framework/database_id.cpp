// Copies the repository's database identifier into another table, asking
// the user for one when the repository has none yet.
#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "framework/object_variable.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdvq {

namespace {

std::string AskForDatabaseId() {
    com::HRESULT hr = com::S_OK;
    com::ComPtr<IKDInputBox> inputBox = com::CreateInstance<IKDInputBox>(CLSID_KDInputBox, IID_IKDInputBox, &hr);
    com::Check(hr);
    std::string answer;
    const Variant omitted;
    com::Check(inputBox->InputBox(LoadResString(609), "Database ID", "", omitted, omitted, omitted, omitted, &answer));
    return answer;
}

}  // namespace

bool UpdateDatabaseId(const std::string& prefix, ado::Connection* connection, const std::string& table,
                      IKDProgressCallback* callback) {
    try {
        std::string databaseId;
        if (ColumnExists(connection, prefix + "KD_VQ_DB_VERSION", "DATABASE_ID")) {
            RecordsetPtr rs = CreateEditRS("SELECT * FROM " + prefix + "KD_VQ_DB_VERSION", connection);
            ado::Recordset& version = Deref(rs.Get());
            if (!version.EOF()) {
                Variant stored = version.Get("DATABASE_ID");
                if (stored.IsNull()) {
                    databaseId = AskForDatabaseId();
                    if (databaseId.empty()) {
                        version.Close();
                        return false;
                    }
                    version.Set("DATABASE_ID", Variant(databaseId));
                    version.Update();
                } else {
                    databaseId = stored.CStr();
                }
            }
            version.Close();
        }
        const std::string target = prefix + table;
        if (!databaseId.empty() && ColumnExists(connection, target, "DATABASE_ID")) {
            return DoCommand(connection, "Update " + target + " set DATABASE_ID='" + databaseId + "'",
                             "Updating DATABASE_ID column in " + target + " table", callback, false);
        }
        return false;
    } catch (...) {
        HandleFailure("modMain::UpdateDatabaseId");
        return false;
    }
}

}  // namespace kdvq
