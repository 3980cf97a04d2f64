#include "systables/kd_hide_vq_tables.h"

#include "library/class_table.h"

namespace kdvq {

KDHideVqTables::KDHideVqTables()
    : SystemTableMarker("KDHideVqTables", "KDVqUpgrader830", 202, 201, "",
                        {
                            "KD_VQ_CONFIG",
                            "KD_VQ_CURRENT_STATE",
                            "KD_VQ_DB_VERSION",
                            "KD_VQ_FILTERS",
                            "KD_VQ_FILTER_ROLE",
                            "KD_VQ_HISTORY",
                            "KD_VQ_MESSAGING",
                            "KD_VQ_MESSAGING_ROLE",
                            "KD_VQ_NODE_TYPE",
                            "KD_VQ_ROLE",
                            "KD_VQ_SEQUENCE",
                            "KD_VQ_STATE",
                            "KD_VQ_STATE_ROLE",
                            "KD_VQ_SUBTASKS",
                            "KD_VQ_SUBTASKS_PARAMETERS",
                            "KD_VQ_SUPPORTED_EXTENSIONS",
                            "KD_VQ_TASKS",
                            "KD_VQ_TASK_ROLE",
                            "KD_VQ_TRANSITION",
                            "KD_VQ_TRANSITION_FROM_STATE",
                            "KD_VQ_TRANSITION_ROLE",
                            "KD_VQ_TRANSITION_TO_STATE",
                            "KD_VQ_USER",
                            "KD_VQ_USER_ROLE",
                            "KD_VQ_VERSIONS",
                        }) {}

UpgraderPtr New_KDHideVqTables() { return UpgraderPtr(new KDHideVqTables()); }

}  // namespace kdvq
