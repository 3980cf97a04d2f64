#include "systables/kd_hide_wfm_tables.h"

#include "library/class_table.h"

namespace kdvq {

KDHideWFMTables::KDHideWFMTables()
    : SystemTableMarker("KDHideWFMTables", "KDHideWFMTables", 222, /*descriptionId, unused*/ 0, "KDWorkflowManager",
                        {
                            "KD_WMS_ADDRESS",
                            "KD_WMS_ADMINISTRATIVE_AREA",
                            "KD_WMS_APPROVED_DESIGNS",
                            "KD_WMS_COMPATIBLE_UNIT",
                            "KD_WMS_COMPATIBLE_UNIT_LIBRARY",
                            "KD_WMS_COST_FACTOR",
                            "KD_WMS_COST_FACTOR_TYPE",
                            "KD_WMS_CUSTOMER",
                            "KD_WMS_CU_COST_FACTOR",
                            "KD_WMS_DB_VERSION",
                            "KD_WMS_DESIGN",
                            "KD_WMS_DESIGN_PRODUCT_TYPE",
                            "KD_WMS_DESIGN_STATUS",
                            "KD_WMS_DESIGN_TYPE",
                            "KD_WMS_DN_COST_FACTOR",
                            "KD_WMS_GIS_COMPATIBLE_UNIT",
                            "KD_WMS_GIS_DESIGN",
                            "KD_WMS_GIS_FACILITY_TYPE",
                            "KD_WMS_GIS_WORK_LOCATION",
                            "KD_WMS_GIS_WORK_REQUEST",
                            "KD_WMS_LABOR_COST",
                            "KD_WMS_RATE_CODE",
                            "KD_WMS_UNITS_OF_MEASURE",
                            "KD_WMS_WL_COST_FACTOR",
                            "KD_WMS_WORK_FUNCTION",
                            "KD_WMS_WORK_LOCATION",
                            "KD_WMS_WORK_REQUEST",
                            "KD_WMS_WR_TYPE",
                            "KD_WMS_WR_USERS",
                        }) {}

UpgraderPtr New_KDHideWFMTables() { return UpgraderPtr(new KDHideWFMTables()); }

}  // namespace kdvq
