#pragma once
// The workflow extension's tables, marked when the repository supports
// workflow.
#include <string>

#include "systables/system_table_marker.h"

namespace kdvq {

class KDHideWFMTables : public SystemTableMarker {
public:
    KDHideWFMTables();

protected:
    // The only marking class whose description is its own text rather than
    // a host resource.
    std::string OnDescription() override {
        return "This upgrade sets the TavixSystemTable model name on the tables belonging to the Workflow Manager "
               "database.";
    }
};

}  // namespace kdvq
