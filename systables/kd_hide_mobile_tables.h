#pragma once
// The mobile extension's tables. No extension is required: they are marked
// whether or not the repository has mobile data exchange.
#include "systables/system_table_marker.h"

namespace kdvq {

class KDHideMobileTables : public SystemTableMarker {
public:
    KDHideMobileTables();
};

}  // namespace kdvq
