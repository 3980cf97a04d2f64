#include "mobile/kd_upgrade_mobile_832.h"

#include "framework/object_variable.h"
#include "library/class_table.h"

namespace kdvq {
namespace {
bool IsEmpty(ado::Recordset& rs) { return rs.EOF() && rs.BOF(); }
}  // namespace

bool KDUpgradeMobile832::Upgrade(bool oracle) {
    ado::Connection* cn = connection_.Get();
    bool result = true;
    if (!TableExists("KD_MOBILE_DB_VERSION", cn)) {
        result = Run(oracle ? "create table KD_MOBILE_DB_VERSION (VERSION number(38))"
                            : "create table KD_MOBILE_DB_VERSION (VERSION INT)",
                     LoadResString(501, {"KD_MOBILE_DB_VERSION"}));
        const bool inserted =
            Run("insert into KD_MOBILE_DB_VERSION values (1)", LoadResString(504, {"KD_MOBILE_DB_VERSION"}));
        result = result && inserted;
    }
    if (!TableExists("KD_MOBILE_STATE", cn)) {
        const bool created =
            Run(oracle ? "create table KD_MOBILE_STATE (NODE_TYPE_ID number(38), NODE_ID NUMBER(38), "
                         "PACKET_ID VARCHAR2(128), IMPORT_STATE NUMBER(38))"
                       : "create table KD_MOBILE_STATE (NODE_TYPE_ID INT, NODE_ID INT, PACKET_ID VARCHAR(128), "
                         "IMPORT_STATE INT)",
                LoadResString(501, {"KD_MOBILE_STATE"}));
        result = result && created;
        if (result) Starting(LoadResString(603));
    }
    if (result) result = UpgradePacketId();
    return result;
}

int32_t KDUpgradeMobile832::DesignNodeTypeId() {
    if (designNodeTypeLoaded_) return designNodeTypeId_;
    RecordsetPtr rs = CreateReadOnlyRS("SELECT NODE_TYPE_ID, NAME FROM KD_VQ_NODE_TYPE WHERE NAME='Design'",
                                       connection_.Get());
    if (!rs || IsEmpty(*rs)) return 0;
    designNodeTypeId_ = rs->Get("NODE_TYPE_ID").CLng();
    rs->Close();
    designNodeTypeLoaded_ = true;
    return designNodeTypeId_;
}

bool KDUpgradeMobile832::UpgradePacketId() {
    return Handled<bool>(Tag("UpgradePacketId"), [&] {
        ado::Connection* cn = connection_.Get();
        if (!ColumnExists(cn, "KD_WMS_DESIGN", "MOBILE_PACKET_ID")) return true;

        Starting(LoadResString(504, {"KD_MOBILE_STATE"}));
        MigratePacketIds();

        // The Oracle branch carries the table-qualified form, the other one
        // the "on" form.
        const bool indexDropped = Run(IsOracle() ? "DROP INDEX KD_WMS_DESIGN.MOBILE_PACKET_ID"
                                                 : "DROP INDEX MOBILE_PACKET_ID on KD_WMS_DESIGN",
                                      LoadResString(510, {"MOBILE_PACKET_ID", "KD_WMS_DESIGN"}));
        if (!indexDropped) return false;
        return Run("ALTER TABLE KD_WMS_DESIGN DROP COLUMN MOBILE_PACKET_ID",
                   LoadResString(509, {"MOBILE_PACKET_ID", "KD_WMS_DESIGN"}));
    });
}

void KDUpgradeMobile832::MigratePacketIds() {
    ado::Connection* cn = connection_.Get();
    RecordsetPtr designs =
        CreateReadOnlyRS("SELECT ID, MOBILE_PACKET_ID FROM KD_WMS_DESIGN WHERE MOBILE_PACKET_ID IS NOT NULL", cn);
    if (!IsEmpty(*designs)) {
        RecordsetPtr states = CreateEditRS("SELECT * FROM KD_MOBILE_STATE", cn);
        ado::Recordset& state = Deref(states.Get());
        designs->MoveFirst();
        while (!designs->EOF()) {
            // While the table holds no rows at all no filter is set, and the
            // design gets its row straight away.
            if (!IsEmpty(state)) {
                state.MoveFirst();
                state.SetFilter("NODE_TYPE_ID=" + std::to_string(DesignNodeTypeId()) +
                                " AND NODE_ID=" + designs->Get("ID").CStr());
            }
            if (state.EOF()) {
                state.AddNew();
                state.Set("NODE_TYPE_ID", Variant(DesignNodeTypeId()));
                state.Set("NODE_ID", designs->Get("ID"));
                state.Set("PACKET_ID", designs->Get("MOBILE_PACKET_ID"));
                state.Set("IMPORT_STATE", Variant(0));
                state.Update();
            }
            state.SetFilter("");
            designs->MoveNext();
        }
        state.Close();
    }
    Finished(LoadResString(102));
    designs->Close();
}

UpgraderPtr New_KDUpgradeMobile832() { return UpgraderPtr(new KDUpgradeMobile832()); }

}  // namespace kdvq
