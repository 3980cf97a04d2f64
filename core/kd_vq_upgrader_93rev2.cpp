#include "core/kd_vq_upgrader_93rev2.h"

#include "library/class_table.h"
#include "platform/automation/dictionary.h"

namespace kdvq {
namespace {

// Table and key column, in the order the keys are added.
const char* const kPrimaryKeys[][2] = {
    {"KD_VQ_TASKS", "TASK_ID"},
    {"KD_VQ_SUPPORTED_EXTENSIONS", "ID"},
    {"KD_VQ_ROLE", "ROLE_ID"},
    {"KD_VQ_TRANSITION", "TRANSITION_ID"},
    {"KD_VQ_STATE", "STATE_ID"},
    {"KD_VQ_SUBTASKS", "SUBTASK_ID"},
    {"KD_VQ_USER", "USER_ID"},
    {"KD_VQ_MESSAGING", "ID"},
};

}  // namespace

// The class has always reported under the 9.3.1 name.
KDVqUpgrader93rev2::KDVqUpgrader93rev2()
    : CoreUpgrader("KDVqUpgrader93rev2", "KDVqUpgrade931", {294, 293, 4039, 4866}) {}

bool KDVqUpgrader93rev2::OnExecute() {
    // The steps are numbered as the host's logs have always shown them
    // ("Error at line: "): a failure carries the number of the last step
    // reached. Step 2, keeping the callback, is Execute's own.
    int32_t& erl = executeLine_;
    erl = 4;
    com::ComPtr<automation::Dictionary> keys = automation::Dictionary::Create();
    erl = 6;
    for (const auto& key : kPrimaryKeys) {
        keys->Add(key[0], key[1]);
        erl += 2;
    }
    erl = 22;
    bool ok;
    if (IsOracle()) {
        erl = 24;
        ok = AddPrimaryKeys(callback_.Get(), connection_.Get(), *keys, true);
        erl = 25;
    } else {
        erl = 27;
        ok = AddPrimaryKeys(callback_.Get(), connection_.Get(), *keys, false);
        erl = 29;
    }
    erl = 31;
    const bool result = ok && SetDBVersion(connection_.Get(), prefix_, VersionTable(), NewVersion());
    erl = 33;
    return result;
}

UpgraderPtr New_KDVqUpgrader93rev2() { return UpgraderPtr(new KDVqUpgrader93rev2()); }

}  // namespace kdvq
