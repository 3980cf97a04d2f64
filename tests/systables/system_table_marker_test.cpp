#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/class_table.h"
#include "platform/automation/collection.h"
#include "platform/ado/scripted/scripted_provider.h"
#include "tests/support/test_host.h"

namespace kdvq::testing {
namespace {

using Lines = std::vector<std::string>;

struct EnabledCase {
    const char* name;
    UpgraderPtr (*create)();
    bool probe;
    std::vector<std::string> extensions;
    bool expected;
    Lines lines;
};

const std::string kExtensionsQuery = "OPEN SELECT * FROM P_KD_VQ_SUPPORTED_EXTENSIONS";
const std::vector<std::string> kBoth = {"KDSessionManager", "KDWorkflowManager"};

TEST(SystemTableMarkers, EnabledByProbeAndExtension) {
    const EnabledCase cases[] = {
        {"core, no probe component", New_KDHideVqTables, false, kBoth, false, {}},
        {"session, no probe component", New_KDHideSMTables, false, kBoth, false, {}},
        {"workflow, no probe component", New_KDHideWFMTables, false, kBoth, false, {}},
        {"mobile, no probe component", New_KDHideMobileTables, false, kBoth, false, {}},
        {"core", New_KDHideVqTables, true, {}, true, {}},
        {"session with its extension", New_KDHideSMTables, true, kBoth, true, {kExtensionsQuery}},
        {"session without its extension", New_KDHideSMTables, true, {"KDWorkflowManager"}, false, {kExtensionsQuery}},
        {"workflow with its extension", New_KDHideWFMTables, true, kBoth, true, {kExtensionsQuery}},
        {"workflow without its extension", New_KDHideWFMTables, true, {"KDSessionManager"}, false, {kExtensionsQuery}},
        {"mobile without any extension", New_KDHideMobileTables, true, {}, true, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TestHost host;
        host.SetProbeAvailable(c.probe);
        ado::ScriptedProvider* p = nullptr;
        auto cn = host.ScriptedConnection("OraOLEDB.Oracle", &p);
        ado::ScriptedRows rows{{"NAME"}, {}};
        for (const auto& e : c.extensions) rows.rows.push_back({e});
        p->AnswerQuery("SELECT * FROM P_KD_VQ_SUPPORTED_EXTENSIONS", rows);

        UpgraderPtr up = c.create();
        // The version is not looked at.
        EXPECT_EQ(CallEnabled(up.Get(), host.Login(cn.Get(), "P_").Get(), 0), c.expected);
        EXPECT_EQ(host.Log().Lines(), c.lines);
        // The login's connection and prefix are not kept.
        EXPECT_EQ(up->GetConnection(), nullptr);
        EXPECT_EQ(up->GetTablePrefix(), "");
    }
}

std::vector<std::string> Texts(const Variant& list) {
    std::vector<std::string> texts;
    auto collection = automation::CollectionOf(list);
    if (!collection) return texts;
    for (int32_t i = 1; i <= collection->Count(); ++i) texts.push_back(collection->Item(i).AsString());
    return texts;
}

TEST(SystemTableMarkers, ListsInOrderAndNewOnEveryCall) {
    struct Case {
        UpgraderPtr (*create)();
        std::vector<std::string> tables;
    };
    const Case cases[] = {
        {New_KDHideVqTables,
         {"KD_VQ_CONFIG", "KD_VQ_CURRENT_STATE", "KD_VQ_DB_VERSION", "KD_VQ_FILTERS", "KD_VQ_FILTER_ROLE",
          "KD_VQ_HISTORY", "KD_VQ_MESSAGING", "KD_VQ_MESSAGING_ROLE", "KD_VQ_NODE_TYPE", "KD_VQ_ROLE",
          "KD_VQ_SEQUENCE", "KD_VQ_STATE", "KD_VQ_STATE_ROLE", "KD_VQ_SUBTASKS", "KD_VQ_SUBTASKS_PARAMETERS",
          "KD_VQ_SUPPORTED_EXTENSIONS", "KD_VQ_TASKS", "KD_VQ_TASK_ROLE", "KD_VQ_TRANSITION",
          "KD_VQ_TRANSITION_FROM_STATE", "KD_VQ_TRANSITION_ROLE", "KD_VQ_TRANSITION_TO_STATE", "KD_VQ_USER",
          "KD_VQ_USER_ROLE", "KD_VQ_VERSIONS"}},
        {New_KDHideSMTables,
         {"KD_SESSION", "KD_SESSION_BACKUP", "KD_SESSION_DB_VERSION", "KD_SESSION_MODS", "KD_SESSION_TYPE",
          "KD_SESSION_VERSIONS"}},
        {New_KDHideWFMTables,
         {"KD_WMS_ADDRESS", "KD_WMS_ADMINISTRATIVE_AREA", "KD_WMS_APPROVED_DESIGNS", "KD_WMS_COMPATIBLE_UNIT",
          "KD_WMS_COMPATIBLE_UNIT_LIBRARY", "KD_WMS_COST_FACTOR", "KD_WMS_COST_FACTOR_TYPE", "KD_WMS_CUSTOMER",
          "KD_WMS_CU_COST_FACTOR", "KD_WMS_DB_VERSION", "KD_WMS_DESIGN", "KD_WMS_DESIGN_PRODUCT_TYPE",
          "KD_WMS_DESIGN_STATUS", "KD_WMS_DESIGN_TYPE", "KD_WMS_DN_COST_FACTOR", "KD_WMS_GIS_COMPATIBLE_UNIT",
          "KD_WMS_GIS_DESIGN", "KD_WMS_GIS_FACILITY_TYPE", "KD_WMS_GIS_WORK_LOCATION", "KD_WMS_GIS_WORK_REQUEST",
          "KD_WMS_LABOR_COST", "KD_WMS_RATE_CODE", "KD_WMS_UNITS_OF_MEASURE", "KD_WMS_WL_COST_FACTOR",
          "KD_WMS_WORK_FUNCTION", "KD_WMS_WORK_LOCATION", "KD_WMS_WORK_REQUEST", "KD_WMS_WR_TYPE",
          "KD_WMS_WR_USERS"}},
        {New_KDHideMobileTables,
         {"KD_MOBILE_DB_VERSION", "KD_MOBILE_PACKET_ADAPTERS", "KD_MOBILE_STATE", "KD_MOBILE_STORED_DISPLAY"}},
    };
    for (const auto& c : cases) {
        TestHost host;
        UpgraderPtr up = c.create();
        SCOPED_TRACE(up->ClassName());
        Variant first;
        Variant second;
        ASSERT_EQ(up->TavixSystemTables(&first), com::S_OK);
        ASSERT_EQ(up->TavixSystemTables(&second), com::S_OK);
        EXPECT_EQ(Texts(first), c.tables);
        EXPECT_EQ(Texts(second), c.tables);
        EXPECT_NE(automation::CollectionOf(first).Get(), automation::CollectionOf(second).Get());
    }
}

TEST(SystemTableMarkers, NamesDescriptionsAndExecute) {
    struct Case {
        UpgraderPtr (*create)();
        std::string name;
        std::string description;
    };
    const Case cases[] = {
        {New_KDHideVqTables, "res202", "res201"},
        {New_KDHideSMTables, "res212", "res211"},
        {New_KDHideWFMTables, "res222",
         "This upgrade sets the TavixSystemTable model name on the tables belonging to the Workflow Manager "
         "database."},
        {New_KDHideMobileTables, "res224", "res223"},
    };
    for (const auto& c : cases) {
        TestHost host;
        UpgraderPtr up = c.create();
        SCOPED_TRACE(up->ClassName());
        std::string name;
        std::string description;
        ASSERT_EQ(up->Name(&name), com::S_OK);
        ASSERT_EQ(up->Description(&description), com::S_OK);
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(description, c.description);
        // Execute succeeds without an Enabled before it and touches nothing.
        EXPECT_TRUE(CallExecute(up.Get(), host.Callback().Get()));
        EXPECT_EQ(host.Log().Lines(), Lines{});
    }
}

TEST(SystemTableMarkers, ExtensionFailureCarriesTheClassTag) {
    for (auto create : {New_KDHideSMTables, New_KDHideWFMTables}) {
        TestHost host;
        auto cn = host.ScriptedConnection("SQLOLEDB");
        UpgraderPtr up = create();
        SCOPED_TRACE(up->ClassName());
        const std::string tag = up->ClassName() + "::IKDVqDatabaseUpgrader_Enabled";
        std::string raised;
        try {
            CallEnabled(up.Get(), host.Login(cn.Get()).Get(), 0);
        } catch (const automation::BasicError& e) {
            raised = e.Description();
        }
        EXPECT_EQ(raised, tag + "\r\nmodMain::VerifySupportedExtension\r\ntable or view does not exist");
        EXPECT_EQ(host.Log().Lines(),
                  (Lines{"OPEN SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS => ERROR 942",
                         "LOG 1 kdVqUpgraders:\\r\\nmodMain::VerifySupportedExtension\\r\\ntable or view does not exist",
                         "LOG 1 kdVqUpgraders:\\r\\n" + tag +
                             "\\r\\nmodMain::VerifySupportedExtension\\r\\ntable or view does not exist"}));
    }
}

}  // namespace
}  // namespace kdvq::testing
