#pragma once
// The common answers of a workflow repository behind the scripted provider.
#include <string>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {

// The workflow extension registered, and the workflow version table's row.
inline void WorkflowRepository(ado::ScriptedProvider& p, int32_t workflowVersion, const std::string& prefix = "") {
    p.AnswerQuery("SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS",
                  Rows("NAME", {"KDSessionManager", "KDWorkflowManager"}));
    p.AnswerQuery("select VERSION from " + prefix + "KD_WMS_DB_VERSION", Rows("VERSION", {workflowVersion}));
}

}  // namespace kdvq::testing
