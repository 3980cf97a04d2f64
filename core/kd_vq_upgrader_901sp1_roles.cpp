// The role half of the 9.0.1 SP1 upgrade: a role's extension is the one
// shared by every state, filter, task and transition the role is attached
// to. The first object found sets it; an object of another extension is a
// conflict that the administrator must settle by hand.
#include "core/field_text.h"
#include "core/kd_vq_upgrader_901sp1.h"

namespace kdvq {
namespace {

using automation::Dictionary;
using automation::Variant;

// The extension of a role attached to objects of one kind.
struct RolePass {
    std::string sql;
    const char* keyColumn;  // looked up in the pass's dictionary
    Dictionary* extensions;
    const char* nameColumn;
    const char* piece;  // between role and object name in the progress text
    const char* table;  // the table a conflict names
};

}  // namespace

void KDVqUpgrader901sp1::ReadExtensionNames() {
    extensionNames_ = Dictionary::Create();
    RecordsetPtr rsPtr = CreateReadOnlyRS("SELECT NAME, ID FROM " + prefix_ + "KD_VQ_SUPPORTED_EXTENSIONS", connection_.Get());
    ado::Recordset& rs = Opened(rsPtr);
    while (!AtEof(rs)) {
        // The first row of a duplicated identifier wins.
        std::optional<std::string> id = IdKey(rs.Get("ID"));
        if (id && !extensionNames_->Exists(*id)) extensionNames_->Add(*id, TextOf(rs.Get("NAME")));
        rs.MoveNext();
    }
    rs.Close();
}

com::ComPtr<Dictionary> KDVqUpgrader901sp1::ReadNodeTypeExtensions() {
    auto extensions = Dictionary::Create();
    RecordsetPtr rsPtr =
        CreateReadOnlyRS("SELECT NAME, NODE_TYPE_ID, EXTENSION_ID FROM " + prefix_ + "KD_VQ_NODE_TYPE", connection_.Get());
    ado::Recordset& rs = Opened(rsPtr);
    while (!AtEof(rs)) {
        std::optional<std::string> nodeType = IdKey(rs.Get("NODE_TYPE_ID"));
        if (nodeType && !extensions->Exists(*nodeType)) {
            const Variant extension = rs.Get("EXTENSION_ID");
            if (DiffersFrom(extension, kUndetermined)) {
                extensions->Add(*nodeType, *IdKey(extension));
            } else {
                Starting("Warning: Node type " + TextOf(rs.Get("NAME")) + " has no extension assigned to it." +
                         " Extensions for roles that indirectly reference this node type" +
                         " might not be automatically assignable");
            }
        }
        rs.MoveNext();
    }
    rs.Close();
    return extensions;
}

com::ComPtr<Dictionary> KDVqUpgrader901sp1::ReadStateExtensions(Dictionary& nodeTypeExtensions) {
    auto extensions = Dictionary::Create();
    RecordsetPtr rsPtr = CreateReadOnlyRS("SELECT STATE_ID, NODE_TYPE_ID FROM " + prefix_ + "KD_VQ_STATE", connection_.Get());
    ado::Recordset& rs = Opened(rsPtr);
    while (!AtEof(rs)) {
        std::optional<std::string> nodeType = IdKey(rs.Get("NODE_TYPE_ID"));
        const Variant* extension = nodeType ? nodeTypeExtensions.Lookup(*nodeType) : nullptr;
        std::optional<std::string> state = IdKey(rs.Get("STATE_ID"));
        if (extension && state && !extensions->Exists(*state)) extensions->Add(*state, *extension);
        rs.MoveNext();
    }
    rs.Close();
    return extensions;
}

bool KDVqUpgrader901sp1::UpdateRoleExtensionId() {
    // A failure here, also one passed on by GetRoleExtensionId, is logged
    // and makes the run answer false, so no version is written.
    return Handled<bool>(
        Tag("UpdateRoleExtensionId"),
        [&] {
            Starting(LoadResString(504, {"KD_VQ_ROLE"}));
            ReadExtensionNames();
            com::ComPtr<Dictionary> nodeTypeExtensions = ReadNodeTypeExtensions();
            com::ComPtr<Dictionary> stateExtensions = ReadStateExtensions(*nodeTypeExtensions);

            RecordsetPtr rolesRs = CreateEditRS("SELECT ROLE_ID, NAME, EXTENSION_ID FROM KD_VQ_ROLE", connection_.Get());
            ado::Recordset& roles = Opened(rolesRs);
            if (IsEmpty(roles)) {
                roles.Close();
                Finished(LoadResString(102));
                return true;
            }
            roles.MoveFirst();
            while (!AtEof(roles)) {
                // Roles that already have an extension keep it.
                const Variant current = roles.Get("EXTENSION_ID");
                if (current.IsNull() || !DiffersFrom(current, kUndetermined)) {
                    int32_t extension = GetRoleExtensionId(roles.Get("ROLE_ID").CLng(), TextOf(roles.Get("NAME")),
                                                           *nodeTypeExtensions, *stateExtensions);
                    roles.Set("EXTENSION_ID", extension);
                    roles.Update();
                }
                roles.MoveNext();
            }
            roles.Close();
            return true;
        },
        false, false);
}

int32_t KDVqUpgrader901sp1::GetRoleExtensionId(int32_t roleId, const std::string& roleName,
                                               Dictionary& nodeTypeExtensions, Dictionary& stateExtensions) {
    return HandledWithNotice<int32_t>(Tag("GetRoleExtensionId"), [&] {
        const std::string role = std::to_string(roleId);
        const RolePass passes[] = {
            {"SELECT s.STATE_ID, NAME, ROLE_ID FROM " + prefix_ + "KD_VQ_STATE_ROLE sr" + ", " + prefix_ +
                 "KD_VQ_STATE s" + " WHERE ROLE_ID=" + role + " AND s.STATE_ID=sr.STATE_ID",
             "STATE_ID", &stateExtensions, "NAME", " is set for state ", "KD_VQ_STATE_ROLE"},
            {"SELECT STATE_ID, PROGID, ROLE_ID FROM " + prefix_ + "KD_VQ_FILTER_ROLE" + ", " + prefix_ +
                 "KD_VQ_FILTERS" + " WHERE ROLE_ID=" + role + " AND ID=FILTER_ID",
             "STATE_ID", &stateExtensions, "PROGID", " is set for filter ", "KD_VQ_FILTER_ROLE"},
            {"SELECT ROLE_ID, NAME, NODE_TYPE_ID FROM " + prefix_ + "KD_VQ_TASK_ROLE tr" + ", " + prefix_ +
                 " KD_VQ_TASKS t" + " WHERE ROLE_ID=" + role + " AND tr.TASK_ID=t.TASK_ID",
             "NODE_TYPE_ID", &nodeTypeExtensions, "NAME", " is set for Task ", "KD_VQ_TASK_ROLE"},
            {"SELECT ROLE_ID, NAME, NODE_TYPE_ID FROM " + prefix_ + "KD_VQ_TRANSITION_ROLE tr" + ", " + prefix_ +
                 " KD_VQ_TRANSITION t" + " WHERE ROLE_ID=" + role + " AND tr.TRANSITION_ID=t.TRANSITION_ID",
             "NODE_TYPE_ID", &nodeTypeExtensions, "NAME", " is set for Transition ", "KD_VQ_TRANSITION_ROLE"},
        };

        int32_t found = kUndetermined;
        std::string firstName;
        std::string firstTable;
        for (const RolePass& pass : passes) {
            RecordsetPtr rsPtr = CreateReadOnlyRS(pass.sql, connection_.Get());
            ado::Recordset& rs = Opened(rsPtr);
            while (!AtEof(rs)) {
                // Objects whose extension is not known contribute nothing.
                std::optional<std::string> key = IdKey(rs.Get(pass.keyColumn));
                const Variant* item = key ? pass.extensions->Lookup(*key) : nullptr;
                if (item) {
                    const int32_t rowExtension = item->CLng();
                    const Variant* known = extensionNames_->Lookup(std::to_string(rowExtension));
                    const std::string extensionName = known ? known->CStr() : "Unknown";
                    const std::string objectName = TextOf(rs.Get(pass.nameColumn));
                    Starting("  Role " + roleName + pass.piece + objectName + ", Extension=" + extensionName);
                    if (found != kUndetermined && rowExtension != found) {
                        ReportRoleExtensionConflict(roleName, firstName, firstTable, objectName, pass.table);
                        return kUndetermined;
                    }
                    firstName = objectName;
                    firstTable = pass.table;
                    found = rowExtension;
                }
                rs.MoveNext();
            }
            rs.Close();
        }
        if (found == kUndetermined) {
            Starting("  WARNING: Unable to determine extension for role " + roleName + "." +
                     "  Please manually set the extension for this role using the Orvane Administration Tool.");
        }
        return found;
    });
}

void KDVqUpgrader901sp1::ReportRoleExtensionConflict(const std::string& roleName, const std::string& firstName,
                                                     const std::string& firstTable, const std::string& secondName,
                                                     const std::string& secondTable) {
    Starting(LoadResString(605, {roleName}));
    Starting("\t" + LoadResString(606, {firstName, firstTable, secondName, secondTable}));
    Starting("\t" + LoadResString(607));
    Starting("\t" + LoadResString(608, {roleName}));
}

}  // namespace kdvq
