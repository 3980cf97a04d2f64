#include "core/table_index_lists.h"

namespace kdvq {

const std::vector<TableIndex>& CoreTableIndices() {
    // The filters index reads "PRODID"; the mobile state index belongs to the
    // mobile extension but has always been made with the core ones.
    static const std::vector<TableIndex> list = {
        {"KD_VQ_CURRENT_STATE", "SOID, STATE_ID", "KD_VQ_CURRENT_STATE_VQ1"},
        {"KD_VQ_USER_ROLE", "USER_ID, ROLE_ID", "VQ_USER_ROLE_ID_RLID_IDX"},
        {"KD_VQ_NODE_TYPE", "NODE_TYPE_ID", "VQ_NODE_TYPE_ID_IDX"},
        {"KD_VQ_NODE_TYPE", "NAME", "VQ_NODE_TYPE_NAME_IDX"},
        {"KD_VQ_FILTERS", "PROGID", "VQ_FILTERS_PRODID_IDX"},
        {"KD_VQ_STATE", "STATE", "VQ_STATE_STA_IDX"},
        {"KD_VQ_STATE_ROLE", "STATE_ID", "VQ_STATE_ROLE_STID_IDX"},
        {"KD_VQ_SUBTASKS", "TASK_ID", "VQ_SUBTASKS_ID_IDX"},
        {"KD_VQ_SUBTASKS_PARAMETERS", "SUBTASK_ID", "VQ_SUBTASK_PARAM_STID_IDX"},
        {"KD_VQ_TRANSITION_TO_STATE", "TRANSITION_ID", "VQ_TRAN_TO_STATE_TRANID_IDX"},
        {"KD_VQ_TRANSITION_FROM_STATE", "TRANSITION_ID", "VQ_TRAN_FROM_STATE_TRANID_IDX"},
        {"KD_VQ_TRANSITION_ROLE", "TRANSITION_ID", "VQ_TRAN_ROLE_TRANID_IDX"},
        {"KD_VQ_HISTORY", "USER_ID, NODE_TYPE_ID, NODE_ID", "VQ_HIST_ID_NODETY_NDID_IDX"},
        {"KD_MOBILE_STATE", "NODE_TYPE_ID, NODE_ID", "KD_MOBILESTATE_NODETYID_IDX"},
    };
    return list;
}

const std::vector<TableIndex>& WorkflowTableIndices() {
    static const std::vector<TableIndex> list = {
        {"KD_WMS_DN_COST_FACTOR", "DESIGN_ID, FACTOR_ID", "KD_WMS_DN_COST_FACTOR_VQ1", "KD_WMS_DN_COST_FACTOR_IX1"},
        {"KD_WMS_CU_COST_FACTOR", "CU_ID", "KD_WMS_CU_COST_FACTOR_CUID_IDX"},
        {"KD_WMS_CU_COST_FACTOR", "FACTOR_ID", "KD_WMS_CU_COST_FACTOR_FID_IDX"},
        {"KD_WMS_WL_COST_FACTOR", "WORKLOCATION_ID", "KD_WMS_WL_COST_FACTOR_WLID_IDX"},
        {"KD_WMS_WL_COST_FACTOR", "FACTOR_ID", "KD_WMS_WL_COST_FACTOR_FID_IDX"},
        {"KD_WMS_COMPATIBLE_UNIT_LIBRARY", "CODE", "KD_WMS_CU_LIBRARY_IDX"},
        {"KD_WMS_COMPATIBLE_UNIT", "DESIGN_ID", "KD_WMS_CU_DESIGN_ID_IDX"},
        {"KD_WMS_COMPATIBLE_UNIT", "WORK_LOCATION_ID", "KD_WMS_CU_WORK_LOC_ID_IDX"},
        {"KD_WMS_WORK_LOCATION", "DESIGN_ID", "KD_WMS_WORK_LOCATION_IDX"},
        {"KD_WMS_APPROVED_DESIGNS", "WORK_REQUEST_ID", "KD_WMS_APPROVED_DN_WRID_IDX"},
        {"KD_WMS_APPROVED_DESIGNS", "DESIGN_ID", "KD_WMS_APPROVED_DN_DNID_IDX"},
        {"KD_WMS_DESIGN", "COPY_FROM_ID", "KD_WMS_DESIGN_COPYFROM_IDX"},
        {"KD_WMS_WR_USERS", "WORK_REQUEST_ID", "KD_WMS_WR_USERS_IDX"},
    };
    return list;
}

}  // namespace kdvq
