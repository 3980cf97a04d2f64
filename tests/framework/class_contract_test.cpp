// What all 31 classes share, one row a class: Name and Description, the
// class name their error tags carry, and the routine each dialect runs,
// seen in the tags a failure inside it is reported under.
#include <gtest/gtest.h>

#include "library/class_table.h"
#include "platform/automation/basic_error.h"
#include "platform/automation/collection.h"
#include "tests/support/host_objects.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

struct ClassRow {
    const char* name;
    int32_t nameId;
    std::string description;  // as the test host's resource strings give it
    const char* tagName;      // the class name in every tag
    // The routine each route runs, "" where no routine of its own can fail.
    const char* oracleRoutine;
    const char* sqlServerRoutine;
};

std::string Res(int32_t id) { return "res" + std::to_string(id); }

const std::string kWorkflowMarkingText =
    "This upgrade sets the TavixSystemTable model name on the tables belonging to the Workflow Manager database.";

const ClassRow kClasses[] = {
    {"KDHideVqTables", 202, Res(201), "KDVqUpgrader830", "", ""},
    {"KDHideSMTables", 212, Res(211), "KDHideSMTables", "", ""},
    {"KDHideWFMTables", 222, kWorkflowMarkingText, "KDHideWFMTables", "", ""},
    {"KDVqUpgrader830", 232, Res(231), "KDVqUpgrader830", "UpgradeOracle", "UpgradeMSSQL"},
    {"KDUpgradeWFM830", 252, Res(251), "KDUpgradeWFM830", "UpgradeOracle", "UpgradeOracle"},
    {"KDVqUpgrader832", 256, Res(255), "KDUpgradeWFM832", "UpgradeOracle", "UpgradeOracle"},
    {"KDHideMobileTables", 224, Res(223), "KDHideMobileTables", "", ""},
    {"KDUpgradeWFM832", 254, Res(253), "KDUpgradeWFM832", "UpgradeOracle", "UpgradeOracle"},
    {"KDVqUpgrader833", 262, Res(261), "KDVqUpgrade833", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgraderSM833", 264, Res(263), "KDUpgradeSM833", "UpgradeOracle", "UpgradeMSSQL"},
    {"KDUpgradeSM830", 242, Res(241), "KDUpgradeSM830", "UpgradeOracle", "UpgradeMSSQL"},
    {"KDUpgradeMobile901", 266, Res(265), "KDUpgradeMobile901", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgradeWFM833", 260, Res(259), "KDUpgradeWFM833", "UpgradeOracle", "UpgradeMSSQLSchema"},
    {"KDUpgradeMobile832", 258, Res(257), "KDUpgradeMobile832", "UpgradeOracle", "UpgradeOracle"},
    {"KDCreateTableIndices", 268, "res267(\r\n\r\n)", "KDCreateTableIndices", "AddOracleIndices", "AddOracleIndices"},
    {"KDVqUpgrader902", 274, Res(273), "KDVqUpgrade902", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgradeWFM902", 280, Res(279), "KDUpgradeWFM902", "UpgradeOracle", "UpgradeMSSQLSchema"},
    {"KDVqUpgrader901sp1", 270, Res(269), "KDVqUpgrade901sp1", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgraderSM902", 276, Res(275), "KDUpgradeSM902", "UpgradeOracle", "UpgradeMSSQL"},
    {"KDUpgradeMobile902", 278, Res(277), "KDUpgradeMobile910", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgradeWFM901sp1", 272, Res(271), "KDUpgradeWFM901sp1", "UpgradeOracle", "UpgradeMSSQLSchema"},
    {"KDUpgradeMobile91SP1", 282, Res(281), "KDUpgradeMobile91SP1", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgradeSM912", 284, Res(283), "KDUpgradeSM912", "UpgradeOracle", "UpgradeMSSQL"},
    {"KDVqUpgrader912", 286, Res(285), "KDVqUpgrade912", "UpgradeOracle", "UpgradeOracle"},
    {"KDVqUpgrader920", 290, Res(289), "KDVqUpgrade920", "UpgradeOracleSchema", "UpgradeMSSQLSchema"},
    {"KDUpgradeSM921", 292, Res(291), "KDUpgradeSM921", "UpgradeOracle", "UpgradeMSSQLSchema"},
    {"KDUpgradeMobile93rev2", 300, Res(299), "KDUpgradeMobile931", "UpgradeOracle", "UpgradeOracle"},
    {"KDUpgradeSM93rev2", 296, Res(295), "KDUpgradeSM931", "", ""},
    {"KDVqUpgrader93rev2", 294, Res(293), "KDVqUpgrade931", "", ""},
    {"kdUpgradeWFM93rev2", 298, Res(297), "KDUpgradeWFM902", "UpgradeOracle", "UpgradeMSSQLSchema"},
    {"kdUpgradeWFM931", 302, Res(301), "kdUpgradeWFM931", "UpgradeOracle", "UpgradeMSSQLSchema"},
};

UpgraderPtr (*Creator(const std::string& name))() {
    for (const UpgraderClass& c : UpgraderClasses()) {
        if (c.name == name) return c.create;
    }
    return nullptr;
}

// The class's own tags in the last failure the logger received, outermost
// first, joined by " > ".
std::string LastTags(const Lines& log, const std::string& tagName) {
    for (auto line = log.rbegin(); line != log.rend(); ++line) {
        if (line->rfind("LOG 1 kdVqUpgraders:", 0) != 0) continue;
        std::string tags;
        for (size_t at = line->find("\\r\\n"); at != std::string::npos; at = line->find("\\r\\n", at + 4)) {
            const std::string part = line->substr(at + 4, line->find("\\r\\n", at + 4) - at - 4);
            if (part.rfind(tagName + "::", 0) == 0) tags += (tags.empty() ? "" : " > ") + part;
        }
        return tags;
    }
    return "";
}

// A callback that refuses both operations, so that any progress text a
// routine sends raises inside it.
class RefusingCallback : public com::Object<RefusingCallback, IKDProgressCallback> {
public:
    HRESULT Operation1() override { return com::E_NOTIMPL; }
    HRESULT Operation2() override { return com::E_NOTIMPL; }
    HRESULT StepFinished(const std::string&) override { return com::E_FAIL; }
    HRESULT StepStarting(const std::string&) override { return com::E_FAIL; }
};

TEST(EveryClass, NameDescriptionAndNoOtherClass) {
    ASSERT_EQ(std::size(kClasses), UpgraderClasses().size());
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.name);
        TestHost host;
        auto create = Creator(row.name);
        ASSERT_NE(create, nullptr);
        UpgraderPtr upgrader = create();
        std::string name;
        std::string description;
        ASSERT_EQ(upgrader->Name(&name), com::S_OK);
        ASSERT_EQ(upgrader->Description(&description), com::S_OK);
        EXPECT_EQ(name, Res(row.nameId));
        EXPECT_EQ(description, row.description);
        EXPECT_TRUE(upgrader->TablesToUpgrade().IsEmpty());
    }
}

// A login whose operation 4 hands out something that is no connection.
TEST(EveryClass, EnabledRefusesAnObjectThatIsNoConnection) {
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.name);
        TestHost host;
        auto notAConnection = automation::Collection::Create();
        auto login = NewLoginHanding(notAConnection->Unknown());
        std::string raised;
        try {
            CallEnabled(Creator(row.name)().Get(), login.Get(), 0);
        } catch (const automation::BasicError& e) {
            raised = e.Description();
        }
        // The core and mobile marking classes never read the login.
        const std::string name = row.name;
        const bool readsLogin = name != "KDHideVqTables" && name != "KDHideMobileTables";
        EXPECT_EQ(raised, readsLogin ? std::string(row.tagName) + "::IKDVqDatabaseUpgrader_Enabled\r\nType mismatch"
                                     : "");
    }
}

// Every statement and query fails and the callback refuses every text:
// the failure that reaches the host names the routine of the route.
TEST(EveryClass, FailureOnEachRouteCarriesTheRoutinesTag) {
    for (const ClassRow& row : kClasses) {
        for (const Dialect& d : kDialects) {
            SCOPED_TRACE(std::string(row.name) + " " + d.Name());
            TestHost host;
            ado::ScriptedProvider* p = nullptr;
            auto cn = host.ScriptedConnection(d.Provider(), &p);
            bool failing = false;
            p->SetHandler([&failing](const std::string&, const std::string&) -> std::optional<ado::ScriptedAnswer> {
                if (!failing) return std::nullopt;
                return ado::ScriptedAnswer{{3113}, "connection lost"};
            });
            p->SetUnknownQueriesSucceed(true);
            UpgraderPtr upgrader = Creator(row.name)();
            // Enabled keeps the connection whatever it answers.
            CallEnabled(upgrader.Get(), host.Login(cn.Get()).Get(), 0);
            failing = true;
            try {
                CallExecute(upgrader.Get(), RefusingCallback::Create().Get());
            } catch (const automation::BasicError&) {
            }
            const std::string routine = d.oracle ? row.oracleRoutine : row.sqlServerRoutine;
            const std::string tag = row.tagName;
            EXPECT_EQ(LastTags(host.Log().Lines(), tag),
                      routine.empty() ? "" : tag + "::IKDVqDatabaseUpgrader_Execute > " + tag + "::" + routine);
        }
    }
}

}  // namespace
}  // namespace kdvq::testing
