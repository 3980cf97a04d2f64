#pragma once
// The session extension's tables, marked when the repository supports
// sessions.
#include "systables/system_table_marker.h"

namespace kdvq {

class KDHideSMTables : public SystemTableMarker {
public:
    KDHideSMTables();
};

}  // namespace kdvq
