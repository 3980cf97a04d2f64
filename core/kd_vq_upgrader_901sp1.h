#pragma once
// Release 9.0.1 SP1 of the core tables. It replays the 8.3.3 upgrade, then
// gives every transition the node type of the states it leads to and every
// role the extension of the objects it is attached to. Where the data does
// not decide, the value is -1 and the administrator is told what to set by
// hand.
#include <cstdint>
#include <string>

#include "core/core_upgrader.h"
#include "library/class_table.h"
#include "platform/automation/dictionary.h"

namespace kdvq {

class KDVqUpgrader901sp1 : public CoreUpgrader {
public:
    KDVqUpgrader901sp1();

    // Written where the data does not decide the node type or extension.
    static constexpr int32_t kUndetermined = -1;

protected:
    bool OnEnabled(IKDLogin* login, int32_t& version) override;
    bool OnExecute() override;
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    using Dictionary = automation::Dictionary;

    bool Upgrade(const char* addTransitionNodeType, const char* addRoleExtension);
    bool UpdateRoleExtensionId();
    int32_t GetRoleExtensionId(int32_t roleId, const std::string& roleName, Dictionary& nodeTypeExtensions,
                               Dictionary& stateExtensions);
    void ReportRoleExtensionConflict(const std::string& roleName, const std::string& firstName,
                                     const std::string& firstTable, const std::string& secondName,
                                     const std::string& secondTable);
    bool UpdateTransitionNodeTypeId();

    // Extension id text -> node type or state id text, read by the role run.
    void ReadExtensionNames();
    com::ComPtr<Dictionary> ReadNodeTypeExtensions();
    com::ComPtr<Dictionary> ReadStateExtensions(Dictionary& nodeTypeExtensions);

    // Like Handled with re-raise, but the administrator first sees the
    // failure's description among the progress texts.
    template <class R, class F>
    R HandledWithNotice(const std::string& tag, F&& body) {
        try {
            return body();
        } catch (...) {
            Starting(automation::CurrentError().Description());
            HandleFailure(tag, true, 1);
            return R();
        }
    }

    // The 8.3.3 upgrader replayed first; made anew by each Enabled.
    UpgraderPtr release833_;
    // Extension id text -> extension name, made anew by each role run.
    com::ComPtr<Dictionary> extensionNames_;
};

}  // namespace kdvq
