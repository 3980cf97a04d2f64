#include "core/kd_vq_upgrader_901sp1.h"

#include "core/field_text.h"

namespace kdvq {
namespace {

// Below the 8.3.3 range: the replayed upgrader only takes the connection
// and table prefix from the login.
constexpr int32_t kVersionBelow833 = 667;

}  // namespace

KDVqUpgrader901sp1::KDVqUpgrader901sp1()
    : CoreUpgrader("KDVqUpgrader901sp1", "KDVqUpgrade901sp1", {270, 269, 1926, 2703}) {}

bool KDVqUpgrader901sp1::OnEnabled(IKDLogin* login, int32_t& version) {
    release833_ = New_KDVqUpgrader833();
    CallEnabled(release833_.Get(), login, kVersionBelow833);
    TakeLogin(login);
    return IsEnabledFor(version);
}

bool KDVqUpgrader901sp1::OnExecute() {
    if (!release833_) automation::RaiseBasic(automation::kErrObjectVariableNotSet);
    // The 8.3.3 run writes its own version when it succeeds; this release's
    // outcome depends only on its own steps.
    CallExecute(release833_.Get(), callback_.Get());
    return CoreUpgrader::OnExecute();
}

bool KDVqUpgrader901sp1::UpgradeOracle() {
    return Upgrade("Alter table KD_VQ_TRANSITION add NODE_TYPE_ID NUMBER(38)",
                   "Alter table KD_VQ_ROLE add EXTENSION_ID NUMBER(38)");
}

bool KDVqUpgrader901sp1::UpgradeMSSQL() {
    return Upgrade("Alter table KD_VQ_TRANSITION add NODE_TYPE_ID INT", "Alter table KD_VQ_ROLE add EXTENSION_ID INT");
}

bool KDVqUpgrader901sp1::Upgrade(const char* addTransitionNodeType, const char* addRoleExtension) {
    // Both dialects report under the Oracle routine's tag. The columns are
    // filled also when they were already there, so an interrupted run is
    // completed by the next one.
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        bool ok = true;
        AddColumnThenFill(ok,
                          {"KD_VQ_TRANSITION", "NODE_TYPE_ID", addTransitionNodeType,
                           "Adding NODE_TYPE_ID column to KD_VQ_TRANSITION table"},
                          [&] { return UpdateTransitionNodeTypeId(); });
        AddColumnThenFill(ok,
                          {"KD_VQ_ROLE", "EXTENSION_ID", addRoleExtension,
                           "Adding EXTENSION_ID column to KD_VQ_ROLE table"},
                          [&] { return UpdateRoleExtensionId(); });
        return ok;
    });
}

bool KDVqUpgrader901sp1::UpdateTransitionNodeTypeId() {
    return HandledWithNotice<bool>(Tag("UpdateTransitionNodeTypeId"), [&] {
        Starting(LoadResString(504, {"KD_VQ_TRANSITION"}));
        RecordsetPtr transitionsRs =
            CreateEditRS("SELECT TRANSITION_ID, NODE_TYPE_ID, NAME FROM " + prefix_ + "KD_VQ_TRANSITION", connection_.Get());
        ado::Recordset& transitions = Opened(transitionsRs);
        if (IsEmpty(transitions)) {
            transitions.Close();
            Finished(LoadResString(102));
            return true;
        }
        // One row per target state: the transition and that state's node type.
        RecordsetPtr targetsRs = CreateEditRS("SELECT TRANSITION_ID, NODE_TYPE_ID FROM " + prefix_ +
                                                  "KD_VQ_TRANSITION_TO_STATE t, " + prefix_ + "KD_VQ_STATE s" +
                                                  " WHERE t.STATE_ID=s.STATE_ID",
                                              connection_.Get());
        ado::Recordset& targets = Opened(targetsRs);
        transitions.MoveFirst();
        while (!AtEof(transitions)) {
            // A transition that has a node type keeps it.
            if (transitions.Get("NODE_TYPE_ID").IsNull()) {
                if (!IsEmpty(targets)) {
                    targets.MoveFirst();
                    targets.Find("TRANSITION_ID=" + transitions.Get("TRANSITION_ID").CStr(), 0, ado::adSearchForward);
                }
                if (AtEof(targets)) {
                    transitions.Set("NODE_TYPE_ID", kUndetermined);
                    Starting(LoadResString(604, {transitions.Get("NAME")}));
                } else {
                    // The first target state in the recordset's order decides.
                    transitions.Set("NODE_TYPE_ID", targets.Get("NODE_TYPE_ID"));
                }
                transitions.Update();
            }
            transitions.MoveNext();
        }
        targets.Close();
        transitions.Close();
        Finished(LoadResString(102));
        return true;
    });
}

UpgraderPtr New_KDVqUpgrader901sp1() { return UpgraderPtr(new KDVqUpgrader901sp1()); }

}  // namespace kdvq
