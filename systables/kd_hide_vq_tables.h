#pragma once
// The core framework's tables, marked as system tables whenever the host can
// mark them. Its error tags carry the core 8.3.0 upgrader's class name.
#include "systables/system_table_marker.h"

namespace kdvq {

class KDHideVqTables : public SystemTableMarker {
public:
    KDHideVqTables();
};

}  // namespace kdvq
