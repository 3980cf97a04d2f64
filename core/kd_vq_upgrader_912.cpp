#include "core/kd_vq_upgrader_912.h"

#include "library/class_table.h"

namespace kdvq {

KDVqUpgrader912::KDVqUpgrader912() : CoreUpgrader("KDVqUpgrader912", "KDVqUpgrade912", {286, 285, 2860, 3354}) {}

bool KDVqUpgrader912::UpgradeOracle() { return Upgrade("Alter table KD_VQ_NODE_TYPE add (INITIAL_STATE NUMBER(38))"); }

bool KDVqUpgrader912::UpgradeMSSQL() { return Upgrade("Alter table KD_VQ_NODE_TYPE add INITIAL_STATE INT;"); }

bool KDVqUpgrader912::Upgrade(const char* addInitialState) {
    // Both dialects report under the Oracle routine's tag. Empty flags are
    // set also when the column was already there.
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        bool ok = true;
        const std::string progress = LoadResString(502, {"INITIAL_STATE", "KD_VQ_NODE_TYPE"});
        AddColumnThenFill(ok, {"KD_VQ_NODE_TYPE", "INITIAL_STATE", addInitialState, progress.c_str()},
                          [&] { return UpdateInitialState(); });
        return ok;
    });
}

bool KDVqUpgrader912::UpdateInitialState() {
    const std::string text = "Updating INITIAL_STATE in KD_VQ_NODE_TYPE";
    const std::string sql = "UPDATE KD_VQ_NODE_TYPE SET INITIAL_STATE=1 WHERE INITIAL_STATE IS NULL";
    try {
        Starting(text);
        const bool ok = Run(sql, text, true);
        Finished(LoadResString(ok ? 102 : 103));
        return ok;
    } catch (...) {
        HandleFailure(Tag("UpdateInitialState"), false, 1, 0, kCrLf + "SQL: " + sql);
        return false;
    }
}

UpgraderPtr New_KDVqUpgrader912() { return UpgraderPtr(new KDVqUpgrader912()); }

}  // namespace kdvq
