#include "systables/kd_hide_sm_tables.h"

#include "library/class_table.h"

namespace kdvq {

KDHideSMTables::KDHideSMTables()
    : SystemTableMarker("KDHideSMTables", "KDHideSMTables", 212, 211, "KDSessionManager",
                        {
                            "KD_SESSION",
                            "KD_SESSION_BACKUP",
                            "KD_SESSION_DB_VERSION",
                            "KD_SESSION_MODS",
                            "KD_SESSION_TYPE",
                            "KD_SESSION_VERSIONS",
                        }) {}

UpgraderPtr New_KDHideSMTables() { return UpgraderPtr(new KDHideSMTables()); }

}  // namespace kdvq
