#include "session/kd_upgrader_sm_902.h"

#include "framework/object_variable.h"
#include "library/class_table.h"
#include "session/new_state_text.h"

namespace kdvq {

bool KDUpgraderSM902::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] { return Upgrade(true); });
}

bool KDUpgraderSM902::UpgradeMSSQL() {
    return Handled<bool>(Tag("UpgradeMSSQL"), [&] { return Upgrade(false); });
}

bool KDUpgraderSM902::Upgrade(bool oracle) {
    // This release's drop has no word "column" after "drop".
    bool result = RepairSessionSchema(oracle, "Alter table " + prefix_ + "KD_SESSION drop MOBILE_PACKET_ID");
    const bool moved = MoveHistoryRecords(oracle);
    result = result && moved;
    if (result) result = StampSessionVersion("2769");
    return result;
}

// Statements are numbered (erl) so that a failure's report names the step.
bool KDUpgraderSM902::MoveHistoryRecords(bool isOracle) {
    int32_t erl = 0;
    std::string sql;  // the statement last built, shown with a failure
    try {
        ado::Connection* cn = connection_.Get();
        erl = 2;
        Starting(LoadResString(504, {"KD_VQ_HISTORY"}));
        erl = 4;
        if (!TableExists("KD_SESSION_MODS", cn)) return true;
        erl = 8;
        if (!TableExists("KD_VQ_HISTORY", cn)) {
            erl = 10;
            Starting("Missing table KD_VQ_HISTORY");
            return false;
        }

        erl = 14;
        sql = "SELECT SESSION_ID, MOD_USER, MOD_DESCRIPTION, MOD_DATE, MOD_STATE, USER_ID FROM " + prefix_ +
              "KD_SESSION_MODS, " + prefix_ + "KD_VQ_USER WHERE MOD_USER=USER_NAME";
        erl = 16;
        RecordsetPtr mods = CreateReadOnlyRS(sql, cn);
        erl = 18;
        const int32_t sessionNodeTypeId = GetNodeTypeId(prefix_, cn, "Session");

        erl = 22;
        if (!mods->EOF()) {
            erl = 24;
            sql = "SELECT * FROM " + prefix_ + "KD_VQ_HISTORY";
            erl = 26;
            RecordsetPtr history = CreateEditRS(sql, cn);
            while (!mods->EOF()) {
                erl = 30;
                Deref(history.Get()).AddNew();
                erl = 32;
                history->Set("NODE_TYPE_ID", Variant(sessionNodeTypeId));
                erl = 34;
                history->Set("NODE_ID", mods->Get("SESSION_ID"));
                erl = 36;
                history->Set("USER_ID", mods->Get("USER_ID"));
                erl = 38;
                history->Set("DESCRIPTION", mods->Get("MOD_DESCRIPTION"));
                erl = 40;
                history->Set("DATE_TIME", mods->Get("MOD_DATE"));
                erl = 42;
                history->Set("EXTRA_DATA", Variant(NewStateText(mods->Get("MOD_STATE"))));
                erl = 44;
                history->Update();
                erl = 46;
                mods->MoveNext();
            }
            erl = 50;
            history->Close();
        }
        erl = 54;
        mods->Close();

        erl = 58;
        sql = "DROP TABLE " + prefix_ + "KD_SESSION_MODS";
        if (isOracle) sql += " CASCADE CONSTRAINTS";
        erl = 62;
        cn->Execute(sql);
        erl = 64;
        return true;
    } catch (...) {
        const std::string description = automation::CurrentError().Description();
        try {
            Starting(description + kCrLf + "SQL: " + sql);
        } catch (...) {
            // The report below must still be made when the callback fails.
        }
        HandleFailure(Tag("MoveHistoryRecords"), true, 1, erl, kCrLf + sql);
        return false;
    }
}

UpgraderPtr New_KDUpgraderSM902() { return UpgraderPtr(new KDUpgraderSM902()); }

}  // namespace kdvq
