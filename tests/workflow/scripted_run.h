#pragma once
// The common answers of a workflow repository behind the scripted provider,
// and the transcript lines of the workflow version table.
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

// Lines of Enabled on a repository scripted by WorkflowRepository.
inline Lines EnabledLines(const std::string& prefix = "") {
    return {Opened("SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS"),
            Opened("select VERSION from " + prefix + "KD_WMS_DB_VERSION")};
}

// Lines of the version written at the end of a successful run.
inline Lines VersionWritten(int32_t version, const std::string& prefix = "") {
    return VersionRowWritten(prefix + "KD_WMS_DB_VERSION", version);
}

// The two log lines of a failure raised inside a routine and passed on by
// Execute, each handler putting its tag in front.
inline Lines RaisedThrough(const std::string& executeTag, const std::string& routineTag,
                           const std::string& description) {
    return {HandlerFailure({routineTag}, description), HandlerFailure({executeTag, routineTag}, description)};
}

}  // namespace kdvq::testing
