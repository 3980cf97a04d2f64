#include "mobile/kd_upgrade_mobile_93rev2.h"

#include <vector>

#include "library/class_table.h"

namespace kdvq {
namespace {

struct PacketAdapter {
    const char* objectId;
    const char* progId;
    const char* extensionName;
    const char* sequence;
};

// Each extension's adapters run in the order of their sequence numbers.
// Object id 4 is not used.
const std::vector<PacketAdapter>& PacketAdapters() {
    static const std::vector<PacketAdapter> rows = {
        {"1", "KDWFMMobileAdapters.kdWFMInfo", "KDWorkflowManager", "1"},
        {"2", "KDMobileAdapters.kdMobileGraphics", "KDWorkflowManager", "2"},
        {"3", "KDWFMMobileAdapters.kdExtent", "KDWorkflowManager", "3"},
        {"5", "KDSMMobileAdapters.kdSMInfo", "KDSessionManager", "1"},
        {"6", "KDMobileAdapters.kdMobileGraphics", "KDSessionManager", "2"},
        {"7", "KDMobileAdapters.kdExtent", "KDSessionManager", "3"},
    };
    return rows;
}

}  // namespace

bool KDUpgradeMobile93rev2::Upgrade(bool oracle) {
    connection_->BeginTrans();
    try {
        const bool result = UpgradeInTransaction(oracle);
        if (result) {
            connection_->CommitTrans();
        } else {
            connection_->RollbackTrans();
        }
        return result;
    } catch (...) {
        // A failure that ends the routine does not leave the work half done.
        try {
            if (connection_->InTransaction()) connection_->RollbackTrans();
        } catch (...) {
            // The original failure is the one to report.
        }
        throw;
    }
}

bool KDUpgradeMobile93rev2::UpgradeInTransaction(bool oracle) {
    ado::Connection* cn = connection_.Get();
    bool result = true;
    if (!TableExists(prefix_ + "KD_MOBILE_PACKET_ADAPTERS", cn)) {
        result = Run(oracle ? "create table KD_MOBILE_PACKET_ADAPTERS (OBJECTID NUMBER(38), "
                              "PACKET_ADAPTER_PROGID VARCHAR2(128), CALL_SEQUENCE_NUMBER NUMBER(38), "
                              "EXTENSION_NAME VARCHAR2(64))"
                            : "create table KD_MOBILE_PACKET_ADAPTERS (OBJECTID INT, PACKET_ADAPTER_PROGID VARCHAR(128), "
                              "CALL_SEQUENCE_NUMBER INT, EXTENSION_NAME VARCHAR(64))",
                     LoadResString(501, {"KD_MOBILE_PACKET_ADAPTERS"}));
        if (result) {
            Starting(LoadResString(611, {"KD_MOBILE_PACKET_ADAPTERS"}));
            Starting(LoadResString(612, {"KD_MOBILE_PACKET_ADAPTERS"}));
            const bool inserted = InsertRows(oracle ? "COLUMNS" : "");
            result = result && inserted;
        }
    }
    // Both operands are evaluated: the column test runs even after a
    // failure.
    const bool columnMissing = !ColumnExists(cn, "KD_MOBILE_STATE", "PACKET_EXTENSION");
    if (result && columnMissing) {
        result = Run(oracle ? "Alter table KD_MOBILE_STATE add PACKET_EXTENSION VARCHAR2(10)"
                            : "Alter table KD_MOBILE_STATE add PACKET_EXTENSION VARCHAR(10)",
                     "Adding PACKET_EXTENSION column to KD_MOBILE_STATE table");
        if (result)
            result = Run("Update KD_MOBILE_STATE set PACKET_EXTENSION='MDB'",
                         "updating PACKET_EXTENSION in KD_MOBILE_STATE table");
    }
    return result;
}

bool KDUpgradeMobile93rev2::InsertRows(const std::string& word) {
    return Handled<bool>(Tag("InsertRows"), [&] {
        for (const PacketAdapter& row : PacketAdapters()) {
            if (!InsertRow(row.objectId, row.progId, row.extensionName, row.sequence, word)) return false;
        }
        return true;
    });
}

bool KDUpgradeMobile93rev2::InsertRow(const std::string& objectId, const std::string& progId,
                                      const std::string& extensionName, const std::string& sequence,
                                      const std::string& word) {
    return Handled<bool>(Tag("InsertRow"), [&] {
        return Run("Insert into KD_MOBILE_PACKET_ADAPTERS " + word +
                       "(OBJECTID, PACKET_ADAPTER_PROGID, EXTENSION_NAME, CALL_SEQUENCE_NUMBER) values (" + objectId +
                       ", '" + progId + "', '" + extensionName + "', " + sequence + ")",
                   "Adding '" + progId + "' to KD_MOBILE_PACKET_ADAPTERS table.");
    });
}

UpgraderPtr New_KDUpgradeMobile93rev2() { return UpgraderPtr(new KDUpgradeMobile93rev2()); }

}  // namespace kdvq
