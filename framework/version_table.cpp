// Reading and raising the version number kept in a part's version table.
#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"

namespace kdvq {

namespace {

RecordsetPtr OpenVersionTable(ado::Connection* connection, const std::string& prefix, const std::string& table) {
    return CreateEditRS("select VERSION from " + prefix + table, connection);
}

bool IsEmptyRecordset(ado::Recordset& rs) { return rs.EOF() && rs.BOF(); }

}  // namespace

bool SetDBVersion(ado::Connection* connection, const std::string& prefix, const std::string& table, int32_t version) {
    try {
        RecordsetPtr rs = OpenVersionTable(connection, prefix, table);
        if (!rs) return false;
        if (IsEmptyRecordset(*rs)) {
            rs->AddNew();
            rs->Set("VERSION", Variant::Long(version));
            rs->Update();
        }
        rs->MoveFirst();
        // A version is only ever raised: a newer repository keeps its number.
        Variant stored = rs->Get("VERSION");
        if (!stored.IsNull() && stored.CDbl() < version) {
            rs->Set("VERSION", Variant::Long(version));
            rs->Update();
        }
        rs->Close();
        return true;
    } catch (...) {
        HandleFailure("modMain::SetDBVersion", false);
        return false;
    }
}

int32_t GetDBVersion(ado::Connection* connection, const std::string& prefix, const std::string& table) {
    try {
        RecordsetPtr rs = OpenVersionTable(connection, prefix, table);
        if (!rs) return 0;
        if (IsEmptyRecordset(*rs)) {
            // A version table without its row counts as version 1, and the
            // row is written so that later readers agree.
            rs->AddNew();
            rs->Set("VERSION", Variant::Integer(1));
            rs->Save();
        }
        rs->MoveFirst();
        int32_t version = rs->Get("VERSION").CLng();
        rs->Close();
        return version;
    } catch (...) {
        HandleFailure("modMain::GetDBVersion", false);
        return 0;
    }
}

}  // namespace kdvq
