#include "core/kd_vq_upgrader_833.h"

#include "core/field_text.h"
#include "library/class_table.h"

namespace kdvq {
namespace {

// The first identifier handed to a supported extension.
constexpr int32_t kFirstExtensionId = 101;

// The node types the two extensions brought with them before node types
// carried their extension.
const char* const kNodeTypeOwners[][2] = {
    {"AllSessionsFilter", "KDSessionManager"},
    {"UserSessionsFilter", "KDSessionManager"},
    {"UserStatusSessionsFilter", "KDSessionManager"},
    {"WorkLocation", "KDWorkflowManager"},
    {"CU", "KDWorkflowManager"},
    {"UserWorkRequests", "KDWorkflowManager"},
    {"UserStatusWorkRequests", "KDWorkflowManager"},
    {"AllWorkRequests", "KDWorkflowManager"},
    {"CompletedWorkRequests", "KDWorkflowManager"},
    {"Session", "KDSessionManager"},
    {"Design", "KDWorkflowManager"},
    {"WorkRequest", "KDWorkflowManager"},
};

}  // namespace

// The class reports under "KDVqUpgrade833", the name the host's logs know.
KDVqUpgrader833::KDVqUpgrader833()
    : CoreUpgrader("KDVqUpgrader833", "KDVqUpgrade833", {262, 261, 1601, 1926}) {}

bool KDVqUpgrader833::UpgradeOracle() {
    return Upgrade("Alter table KD_VQ_SUPPORTED_EXTENSIONS add ID NUMBER(38)",
                   "Alter table KD_VQ_NODE_TYPE add EXTENSION_ID NUMBER(38)");
}

bool KDVqUpgrader833::UpgradeMSSQL() {
    return Upgrade("Alter table KD_VQ_SUPPORTED_EXTENSIONS add ID INT", "Alter table KD_VQ_NODE_TYPE add EXTENSION_ID INT");
}

bool KDVqUpgrader833::Upgrade(const char* addExtensionsId, const char* addNodeTypeExtensionId) {
    // Both dialects report under the Oracle routine's tag. The identifiers
    // are renumbered also when the column was already there.
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        bool ok = true;
        AddColumnThenFill(ok,
                          {"KD_VQ_SUPPORTED_EXTENSIONS", "ID", addExtensionsId,
                           "Adding ID column to KD_VQ_SUPPORTED_EXTENSIONS table"},
                          [&] { return UpdateSupportedExtensionsId(); });
        AddColumnThenFill(ok,
                          {"KD_VQ_NODE_TYPE", "EXTENSION_ID", addNodeTypeExtensionId,
                           "Adding EXTENSION_ID column to KD_VQ_NODE_TYPE table"},
                          [&] { return UpdateNodeTypesExtensionId(); });
        return ok;
    });
}

bool KDVqUpgrader833::UpdateSupportedExtensionsId() {
    return Handled<bool>(
        Tag("UpdateSupportedExtensionsId"),
        [&] {
            const std::string progress = LoadResString(101, {"KD_VQ_SUPPORTED_EXTENSIONS"});
            RecordsetPtr extensionsRs = CreateEditRS("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS", connection_.Get());
            ado::Recordset& extensions = Opened(extensionsRs);
            if (IsEmpty(extensions)) {
                extensions.Close();
                Starting(progress);
                return true;
            }
            // The sequence row holds the next free identifier, one past the
            // last one handed out below.
            RecordsetPtr sequenceRs =
                CreateEditRS("SELECT * FROM KD_VQ_SEQUENCE WHERE NAME='VQ_SupportedExtensionID'", connection_.Get());
            ado::Recordset& sequence = Opened(sequenceRs);
            if (IsEmpty(sequence)) {
                sequence.AddNew();
                sequence.Set("NAME", "VQ_SupportedExtensionID");
                sequence.Set("INCR", 1);
            }
            sequence.Set("SEQUENCE_VALUE", extensions.RecordCount() + kFirstExtensionId);
            sequence.Update();
            sequence.Close();

            int32_t id = kFirstExtensionId;
            extensions.MoveFirst();
            while (!AtEof(extensions)) {
                extensions.Set("ID", id++);
                extensions.Update();
                extensions.MoveNext();
            }
            extensions.Close();
            return true;
        },
        false, false);
}

bool KDVqUpgrader833::UpdateNodeTypesExtensionId() {
    return Handled<bool>(
        Tag("UpdateNodeTypesExtensionId"),
        [&] {
            RecordsetPtr extensions = CreateEditRS("SELECT ID, NAME FROM KD_VQ_SUPPORTED_EXTENSIONS", connection_.Get());
            RecordsetPtr nodeTypesRs = CreateEditRS("SELECT NAME, EXTENSION_ID FROM KD_VQ_NODE_TYPE", connection_.Get());
            ado::Recordset& nodeTypes = Opened(nodeTypesRs);
            if (!IsEmpty(nodeTypes)) {
                nodeTypes.MoveFirst();
                while (!AtEof(nodeTypes)) {
                    nodeTypes.Set("EXTENSION_ID", GetExtensionId(TextOf(nodeTypes.Get("NAME")), extensions));
                    nodeTypes.Update();
                    nodeTypes.MoveNext();
                }
            }
            nodeTypes.Close();
            if (extensions) extensions->Close();
            return true;
        },
        false, false);
}

int32_t KDVqUpgrader833::GetExtensionId(const std::string& nodeTypeName, const RecordsetPtr& extensions) {
    return Handled<int32_t>(
        Tag("GetExtensionId"),
        [&] {
            if (!nodeTypeExtensions_) {
                nodeTypeExtensions_ = automation::Dictionary::Create(automation::CompareMode::Binary);
                for (const auto& owner : kNodeTypeOwners) nodeTypeExtensions_->Add(owner[0], owner[1]);
            }
            const automation::Variant* extensionName = nodeTypeExtensions_->Lookup(nodeTypeName);
            if (!extensionName) return kNoExtension;
            ado::Recordset& rs = Opened(extensions);
            rs.MoveFirst();
            rs.Find("NAME='" + extensionName->CStr() + "'");
            if (AtEof(rs)) return kNoExtension;
            return rs.Get("ID").CLng();
        },
        false, kNoExtension);
}

UpgraderPtr New_KDVqUpgrader833() { return UpgraderPtr(new KDVqUpgrader833()); }

}  // namespace kdvq
