#include "host/database_id_need.h"

#include "host/repository_connection.h"
#include "host/upgrader_releases.h"
#include "platform/automation/text_case.h"

namespace kdhost {

namespace {

// An upgrader on a part's way to the ones that ask: the tables its Enabled
// tests for (without prefix), and whether it asks for the identifier.
struct ChainStep {
    const char* upgrader;
    std::vector<const char*> tables;
    bool asks;
};

struct AskingChain {
    const char* extension;
    std::vector<ChainStep> steps;  // in the order the part climbs them
};

const std::vector<AskingChain>& Chains() {
    static const std::vector<AskingChain> chains = {
        {"KDSessionManager",
         {{"KDUpgradeSM830", {}, false},
          {"KDUpgraderSM833", {"KD_SESSION"}, true},
          {"KDUpgraderSM902", {"KD_SESSION"}, true}}},
        {"KDWorkflowManager",
         {{"KDUpgradeWFM830", {}, false},
          {"KDUpgradeWFM832", {"KD_WMS_DESIGN", "KD_WMS_WORK_REQUEST"}, false},
          {"KDUpgradeWFM833", {"KD_WMS_WORK_FUNCTION"}, true}}},
    };
    return chains;
}

// The upgrader that adds the DATABASE_ID column to the core version table.
const char kAddsIdentifierColumn[] = "KDVqUpgrader832";

enum class StoredId { kNoRow, kNoColumn, kNull, kPresent };

StoredId ReadStoredId(ado::Connection* connection, const std::string& prefix) {
    com::ComPtr<ado::Recordset> rows = ado::NewRecordset();
    rows->Open("SELECT * FROM " + prefix + kRepositoryParts[0].versionTable, connection, ado::adOpenForwardOnly,
               ado::adLockReadOnly);
    StoredId stored = rows->EOF() ? StoredId::kNoRow : StoredId::kNoColumn;
    for (int32_t i = 0; stored == StoredId::kNoColumn && i < rows->FieldCount(); ++i) {
        ado::Field field = rows->Fields(i);
        if (automation::SameTextIgnoringCase(field.Name(), "DATABASE_ID")) {
            stored = field.Value().IsNull() ? StoredId::kNull : StoredId::kPresent;
        }
    }
    rows->Close();
    return stored;
}

bool ExtensionInstalled(ado::Connection* connection, const std::string& prefix, const std::string& extension) {
    try {
        com::ComPtr<ado::Recordset> rows = ado::NewRecordset();
        rows->Open("SELECT NAME FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS", connection, ado::adOpenForwardOnly,
                   ado::adLockReadOnly);
        bool found = false;
        for (; !found && !rows->EOF(); rows->MoveNext()) {
            found = automation::SameTextIgnoringCase(rows->Get("NAME").CStr(), extension);
        }
        rows->Close();
        return found;
    } catch (...) {
        // Without the table no extension is installed.
        return false;
    }
}

int32_t VersionOf(const char* upgrader) { return ReleaseOfUpgrader(upgrader)->version; }

// The first upgrader of the chain that the part reaches and that asks.
std::string AskingUpgrader(ado::Connection* connection, const std::string& prefix, const AskingChain& chain,
                           int32_t version) {
    if (version >= VersionOf(chain.steps.back().upgrader)) return "";
    if (!ExtensionInstalled(connection, prefix, chain.extension)) return "";
    for (const ChainStep& step : chain.steps) {
        if (version >= VersionOf(step.upgrader)) continue;
        for (const char* table : step.tables) {
            if (!TableReadable(connection, prefix + table)) return "";
        }
        if (step.asks) return step.upgrader;
    }
    return "";
}

}  // namespace

std::vector<std::string> UpgradersThatAskForDatabaseId(ado::Connection* connection, const std::string& prefix,
                                                       const RepositoryVersions& versions) {
    StoredId stored = ReadStoredId(connection, prefix);
    bool nullOnceAdded = stored == StoredId::kNoColumn && versions[0] < VersionOf(kAddsIdentifierColumn);
    if (stored != StoredId::kNull && !nullOnceAdded) return {};
    std::vector<std::string> asking;
    for (const AskingChain& chain : Chains()) {
        size_t part = ReleaseOfUpgrader(chain.steps.front().upgrader)->part;
        std::string upgrader = AskingUpgrader(connection, prefix, chain, versions[part]);
        if (!upgrader.empty()) asking.push_back(upgrader);
    }
    return asking;
}

}  // namespace kdhost
