#include "systables/kd_hide_mobile_tables.h"

#include "library/class_table.h"

namespace kdvq {

KDHideMobileTables::KDHideMobileTables()
    : SystemTableMarker("KDHideMobileTables", "KDHideMobileTables", 224, 223, "",
                        {
                            "KD_MOBILE_DB_VERSION",
                            "KD_MOBILE_PACKET_ADAPTERS",
                            "KD_MOBILE_STATE",
                            "KD_MOBILE_STORED_DISPLAY",
                        }) {}

UpgraderPtr New_KDHideMobileTables() { return UpgraderPtr(new KDHideMobileTables()); }

}  // namespace kdvq
