#include "core/kd_vq_upgrader_920.h"

#include "library/class_table.h"

namespace kdvq {
namespace {

const KDVqUpgrader920::Dialect kOracle = {
    "UpgradeOracleSchema",
    "Create Table KD_VQ_MESSAGING (ID NUMBER(38), TYPE VARCHAR2(64), VERB VARCHAR2(64), NOUN VARCHAR2(64), "
    "VERSION VARCHAR2(64), PROCESSOR_ID VARCHAR2(255))",
    "Create Table KD_VQ_MESSAGING_ROLE (MESSAGE_ID NUMBER(38), ROLE_ID NUMBER(38))",
};

const KDVqUpgrader920::Dialect kMSSQL = {
    "UpgradeMSSQLSchema",
    "Create Table KD_VQ_MESSAGING (ID INT, TYPE VARCHAR(64), VERB VARCHAR(64), NOUN VARCHAR(64), "
    "VERSION VARCHAR(64), PROCESSOR_ID VARCHAR(255))",
    "Create Table KD_VQ_MESSAGING_ROLE (MESSAGE_ID INT, ROLE_ID INT)",
};

}  // namespace

KDVqUpgrader920::KDVqUpgrader920() : CoreUpgrader("KDVqUpgrader920", "KDVqUpgrade920", {290, 289, 3354, 4039}) {}

bool KDVqUpgrader920::UpgradeOracle() { return UpgradeSchema(kOracle); }
bool KDVqUpgrader920::UpgradeMSSQL() { return UpgradeSchema(kMSSQL); }

bool KDVqUpgrader920::DropOldMessagingTable() {
    // Both tests run, whatever the first one found.
    const bool exists = TableExists("KD_VQ_MESSAGING", connection_.Get());
    const bool current = ColumnExists(connection_.Get(), "KD_VQ_MESSAGING", "PROCESSOR_ID");
    if (exists && !current) return Run("Drop Table KD_VQ_MESSAGING", LoadResString(507, {"KD_VQ_MESSAGING"}));
    return true;
}

void KDVqUpgrader920::CreateMissing(const char* table, const char* sql, bool& ok) {
    if (TableExists(table, connection_.Get())) return;
    ok = Run(sql, LoadResString(501, {table}));
    if (ok) Starting(LoadResString(611, {table}));
}

bool KDVqUpgrader920::UpgradeSchema(const Dialect& d) {
    return Handled<bool>(Tag(d.routine), [&] {
        bool ok = true;
        // Whether the old table could be dropped shows in the create below.
        DropOldMessagingTable();
        CreateMissing("KD_VQ_MESSAGING", d.createMessaging, ok);
        CreateMissing("KD_VQ_MESSAGING_ROLE", d.createMessagingRole, ok);
        return ok;
    });
}

UpgraderPtr New_KDVqUpgrader920() { return UpgraderPtr(new KDVqUpgrader920()); }

}  // namespace kdvq
