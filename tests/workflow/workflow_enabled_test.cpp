#include <gtest/gtest.h>

#include "tests/workflow/scripted_run.h"

namespace kdvq::testing {
namespace {

constexpr int32_t kNoVersionTable = -1;

struct EnabledCase {
    const char* name;
    UpgraderPtr (*create)();
    int32_t coreVersion;
    int32_t workflowVersion;  // kNoVersionTable: KD_WMS_DB_VERSION missing
    bool expected;
    bool extension = true;    // KDWorkflowManager among the supported extensions
    bool tables = true;       // the tables 8.3.2 and 8.3.3 require
};

bool EnabledOn(const EnabledCase& c) {
    TestHost host;
    ado::ScriptedProvider* p = nullptr;
    auto cn = host.ScriptedConnection(kOracle, &p);
    p->AnswerQuery("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS",
                   c.extension ? Rows("NAME", {"KDSessionManager", "kdworkflowmanager"})
                               : Rows("NAME", {"KDSessionManager"}));
    if (c.workflowVersion != kNoVersionTable) {
        p->AnswerQuery("select VERSION from KD_WMS_DB_VERSION", Rows("VERSION", {c.workflowVersion}));
    }
    if (c.tables) {
        for (const char* table : {"KD_WMS_DESIGN", "KD_WMS_WORK_REQUEST", "KD_WMS_WORK_FUNCTION"}) {
            p->AnswerQuery(std::string("SELECT * FROM ") + table, {});
        }
    }
    return CallEnabled(c.create().Get(), host.Login(cn.Get()).Get(), c.coreVersion);
}

TEST(WorkflowUpgraders, EnabledByExtensionCoreVersionAndWorkflowRange) {
    const EnabledCase cases[] = {
        {"8.3.0: core below 8.3.0", New_KDUpgradeWFM830, 1205, 0, false},
        {"8.3.0: no workflow version table yet", New_KDUpgradeWFM830, 1206, kNoVersionTable, true},
        {"8.3.0: workflow below 1206", New_KDUpgradeWFM830, 1206, 1205, true},
        {"8.3.0: workflow at 1206", New_KDUpgradeWFM830, 1206, 1206, false},
        {"8.3.0: no workflow extension", New_KDUpgradeWFM830, 1206, 0, false, false},

        {"8.3.2: core 1600", New_KDUpgradeWFM832, 1600, 1206, false},
        {"8.3.2: workflow 1205", New_KDUpgradeWFM832, 1601, 1205, false},
        {"8.3.2: workflow 1206", New_KDUpgradeWFM832, 1601, 1206, true},
        {"8.3.2: workflow 1600", New_KDUpgradeWFM832, 1601, 1600, true},
        {"8.3.2: workflow 1601", New_KDUpgradeWFM832, 1601, 1601, false},
        {"8.3.2: design tables missing", New_KDUpgradeWFM832, 1601, 1206, false, true, false},
        {"8.3.2: no workflow extension", New_KDUpgradeWFM832, 1601, 1206, false, false},

        {"8.3.3: core 1925", New_KDUpgradeWFM833, 1925, 1601, false},
        {"8.3.3: workflow 1600", New_KDUpgradeWFM833, 1926, 1600, false},
        {"8.3.3: workflow 1601", New_KDUpgradeWFM833, 1926, 1601, true},
        {"8.3.3: workflow 2407", New_KDUpgradeWFM833, 1926, 2407, true},
        {"8.3.3: workflow 2408", New_KDUpgradeWFM833, 1926, 2408, false},
        {"8.3.3: work function table missing", New_KDUpgradeWFM833, 1926, 1601, false, true, false},

        {"9.0.1 SP1: core 2702", New_KDUpgradeWFM901sp1, 2702, 2408, false},
        {"9.0.1 SP1: workflow 2407", New_KDUpgradeWFM901sp1, 2703, 2407, false},
        {"9.0.1 SP1: workflow 2408", New_KDUpgradeWFM901sp1, 2703, 2408, true},
        {"9.0.1 SP1: workflow 2709", New_KDUpgradeWFM901sp1, 2703, 2709, true},
        {"9.0.1 SP1: workflow 2710", New_KDUpgradeWFM901sp1, 2703, 2710, false},
        {"9.0.1 SP1: tests no tables", New_KDUpgradeWFM901sp1, 2703, 2408, true, true, false},
        {"9.0.1 SP1: no workflow extension", New_KDUpgradeWFM901sp1, 2703, 2408, false, false},

        {"9.0.2: core 2859", New_KDUpgradeWFM902, 2859, 2710, false},
        {"9.0.2: workflow 2709", New_KDUpgradeWFM902, 2860, 2709, false},
        {"9.0.2: workflow 2710", New_KDUpgradeWFM902, 2860, 2710, true},
        {"9.0.2: workflow 2809", New_KDUpgradeWFM902, 2860, 2809, true},
        {"9.0.2: workflow 2810", New_KDUpgradeWFM902, 2860, 2810, false},

        {"9.3 rev2: core 4038", New_kdUpgradeWFM93rev2, 4038, 2810, false},
        {"9.3 rev2: workflow 2809", New_kdUpgradeWFM93rev2, 4039, 2809, false},
        {"9.3 rev2: workflow 2810", New_kdUpgradeWFM93rev2, 4039, 2810, true},
        {"9.3 rev2: workflow 5084", New_kdUpgradeWFM93rev2, 4039, 5084, true},
        {"9.3 rev2: workflow 5085", New_kdUpgradeWFM93rev2, 4039, 5085, false},

        {"9.3.1: core 4865", New_kdUpgradeWFM931, 4865, 5085, false},
        {"9.3.1: workflow 5084", New_kdUpgradeWFM931, 4866, 5084, false},
        {"9.3.1: workflow 5085", New_kdUpgradeWFM931, 4866, 5085, true},
        {"9.3.1: workflow 5644", New_kdUpgradeWFM931, 4866, 5644, true},
        {"9.3.1: workflow 5645", New_kdUpgradeWFM931, 4866, 5645, false},
        {"9.3.1: no workflow extension", New_kdUpgradeWFM931, 4866, 5085, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(EnabledOn(c), c.expected);
    }
}

// A failure inside Enabled reaches the host with the chain of tags; the
// 9.3 rev2 class carries the 9.0.2 class's name in its tags.
TEST(WorkflowUpgraders, EnabledFailureCarriesTheClassTag) {
    struct Case {
        UpgraderPtr (*create)();
        const char* tag;
    };
    const Case cases[] = {
        {New_KDUpgradeWFM830, "KDUpgradeWFM830::IKDVqDatabaseUpgrader_Enabled"},
        {New_kdUpgradeWFM93rev2, "KDUpgradeWFM902::IKDVqDatabaseUpgrader_Enabled"},
        {New_kdUpgradeWFM931, "kdUpgradeWFM931::IKDVqDatabaseUpgrader_Enabled"},
    };
    const std::string inner = "modMain::VerifySupportedExtension\\r\\ntable or view does not exist";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tag);
        TestHost host;
        auto cn = host.ScriptedConnection(kOracle);
        std::string raised;
        try {
            CallEnabled(c.create().Get(), host.Login(cn.Get()).Get(), 9999);
        } catch (const automation::BasicError& e) {
            raised = e.Description();
        }
        EXPECT_EQ(raised, std::string(c.tag) + "\r\nmodMain::VerifySupportedExtension\r\ntable or view does not exist");
        EXPECT_EQ(host.Log().Lines(),
                  (Lines{Missing("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS"), "LOG 1 kdVqUpgraders:\\r\\n" + inner,
                         "LOG 1 kdVqUpgraders:\\r\\n" + std::string(c.tag) + "\\r\\n" + inner}));
    }
}

}  // namespace
}  // namespace kdvq::testing
