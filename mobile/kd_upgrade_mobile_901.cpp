#include "mobile/kd_upgrade_mobile_901.h"

#include <vector>

#include "library/class_table.h"

namespace kdvq {
namespace {

struct StoredDisplay {
    const char* values;  // the VALUES list, spacing as written
    const char* name;
    bool oracleAlias;    // the Oracle text carries the word "columns"
};

// Only the first two Oracle inserts name the alias "columns".
const std::vector<StoredDisplay>& StoredDisplays() {
    static const std::vector<StoredDisplay> rows = {
        {"(1, 'Electric Design')", "Electric Design", true},
        {"(2,'Gas Design')", "Gas Design", true},
        {"(3,'Water Design')", "Water Design", false},
        {"(4,'Electric Distribution')", "Electric Distribution", false},
        {"(5,'Gas Distribution')", "Gas Distribution", false},
        {"(6,'Water Distribution')", "Water Distribution", false},
    };
    return rows;
}

}  // namespace

bool KDUpgradeMobile901::Upgrade(bool oracle) {
    if (TableExists(prefix_ + "KD_MOBILE_STORED_DISPLAY", connection_.Get())) return true;
    bool result = Run(oracle ? "create table KD_MOBILE_STORED_DISPLAY (ID NUMBER(38), STORED_DISPLAY VARCHAR2(128))"
                             : "create table KD_MOBILE_STORED_DISPLAY (ID INT, STORED_DISPLAY VARCHAR(128))",
                      LoadResString(501, {"KD_MOBILE_STORED_DISPLAY"}));
    if (result) Starting(LoadResString(603));
    for (const StoredDisplay& row : StoredDisplays()) {
        const std::string table = oracle && row.oracleAlias ? "KD_MOBILE_STORED_DISPLAY columns" : "KD_MOBILE_STORED_DISPLAY";
        const bool ok = Run("Insert into " + table + " (ID, STORED_DISPLAY) values " + row.values,
                            std::string("Adding '") + row.name + "' to KD_MOBILE_STORED_DISPLAY table.");
        result = result && ok;
    }
    return result;
}

UpgraderPtr New_KDUpgradeMobile901() { return UpgraderPtr(new KDUpgradeMobile901()); }

}  // namespace kdvq
