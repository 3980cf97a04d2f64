// Opening recordsets and the existence tests built on them.
#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "framework/object_variable.h"
#include "platform/automation/collection.h"

namespace kdvq {

namespace {

RecordsetPtr OpenRecordset(const std::string& sql, ado::Connection* connection, int32_t location,
                           int32_t cursorType, int32_t lockType) {
    RecordsetPtr rs = ado::NewRecordset();
    rs->SetCursorLocation(location);
    rs->Open(sql, connection, cursorType, lockType, ado::adOptionUnspecified);
    return rs;
}

// A probe whose failure only means "not there".
template <class F>
RecordsetPtr IgnoringFailures(F&& open) {
    try {
        return open();
    } catch (...) {
        return nullptr;
    }
}

}  // namespace

RecordsetPtr CreateReadOnlyRS(const std::string& sql, ado::Connection* connection) {
    if (sql.empty()) return nullptr;
    return OpenRecordset(sql, connection, ado::adUseServer, ado::adOpenForwardOnly, ado::adLockReadOnly);
}

RecordsetPtr CreateEditRS(const std::string& sql, ado::Connection* connection) {
    if (sql.empty()) return nullptr;
    return IgnoringFailures(
        [&] { return OpenRecordset(sql, connection, ado::adUseClient, ado::adOpenKeyset, ado::adLockOptimistic); });
}

bool TableExists(const std::string& table, ado::Connection* connection) {
    return static_cast<bool>(IgnoringFailures([&] { return CreateReadOnlyRS("SELECT * FROM " + table, connection); }));
}

bool ColumnExists(ado::Connection* connection, const std::string& table, const std::string& column) {
    try {
        return static_cast<bool>(CreateEditRS("select " + column + " from " + table, connection));
    } catch (...) {
        HandleFailure("modMain::ColumnExists", false);
        return false;
    }
}

bool CheckForTables(const Variant& tables, ado::Connection* connection) {
    try {
        if (tables.IsEmpty()) return false;
        com::ComPtr<automation::ICollection> list = automation::CollectionOf(tables);
        if (!list) return false;
        for (int32_t i = 1; i <= list->Count(); ++i) {
            if (!TableExists(list->Item(i).CStr(), connection)) return false;
        }
        return true;
    } catch (...) {
        HandleFailure("modMain::CheckForTables");
        return false;
    }
}

int32_t GetNodeTypeId(const std::string& prefix, ado::Connection* connection, const std::string& nodeTypeName) {
    RecordsetPtr rs = CreateReadOnlyRS(
        "SELECT node_type_id, name FROM " + prefix + "KD_VQ_NODE_TYPE" + " WHERE name='" + nodeTypeName + "'",
        connection);
    int32_t id = 0;
    if (!Deref(rs.Get()).EOF()) id = rs->Get("node_type_id").CLng();
    rs->Close();
    return id;
}

}  // namespace kdvq
