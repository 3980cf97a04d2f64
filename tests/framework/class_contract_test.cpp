// What all 31 classes share, one row a class: Name and Description, and
// the class name their error tags carry (the routines' own tags are in the
// transcripts of the situations that reach them).
#include <gtest/gtest.h>

#include <type_traits>

#include "core/kd_create_table_indices.h"
#include "core/kd_vq_upgrader_830.h"
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
};

std::string Res(int32_t id) { return "res" + std::to_string(id); }

const std::string kWorkflowMarkingText =
    "This upgrade sets the TavixSystemTable model name on the tables belonging to the Workflow Manager database.";

const ClassRow kClasses[] = {
    {"KDHideVqTables", 202, Res(201), "KDVqUpgrader830"},
    {"KDHideSMTables", 212, Res(211), "KDHideSMTables"},
    {"KDHideWFMTables", 222, kWorkflowMarkingText, "KDHideWFMTables"},
    {"KDVqUpgrader830", 232, Res(231), "KDVqUpgrader830"},
    {"KDUpgradeWFM830", 252, Res(251), "KDUpgradeWFM830"},
    {"KDVqUpgrader832", 256, Res(255), "KDUpgradeWFM832"},
    {"KDHideMobileTables", 224, Res(223), "KDHideMobileTables"},
    {"KDUpgradeWFM832", 254, Res(253), "KDUpgradeWFM832"},
    {"KDVqUpgrader833", 262, Res(261), "KDVqUpgrade833"},
    {"KDUpgraderSM833", 264, Res(263), "KDUpgradeSM833"},
    {"KDUpgradeSM830", 242, Res(241), "KDUpgradeSM830"},
    {"KDUpgradeMobile901", 266, Res(265), "KDUpgradeMobile901"},
    {"KDUpgradeWFM833", 260, Res(259), "KDUpgradeWFM833"},
    {"KDUpgradeMobile832", 258, Res(257), "KDUpgradeMobile832"},
    {"KDCreateTableIndices", 268, "res267(\r\n\r\n)", "KDCreateTableIndices"},
    {"KDVqUpgrader902", 274, Res(273), "KDVqUpgrade902"},
    {"KDUpgradeWFM902", 280, Res(279), "KDUpgradeWFM902"},
    {"KDVqUpgrader901sp1", 270, Res(269), "KDVqUpgrade901sp1"},
    {"KDUpgraderSM902", 276, Res(275), "KDUpgradeSM902"},
    {"KDUpgradeMobile902", 278, Res(277), "KDUpgradeMobile910"},
    {"KDUpgradeWFM901sp1", 272, Res(271), "KDUpgradeWFM901sp1"},
    {"KDUpgradeMobile91SP1", 282, Res(281), "KDUpgradeMobile91SP1"},
    {"KDUpgradeSM912", 284, Res(283), "KDUpgradeSM912"},
    {"KDVqUpgrader912", 286, Res(285), "KDVqUpgrade912"},
    {"KDVqUpgrader920", 290, Res(289), "KDVqUpgrade920"},
    {"KDUpgradeSM921", 292, Res(291), "KDUpgradeSM921"},
    {"KDUpgradeMobile93rev2", 300, Res(299), "KDUpgradeMobile931"},
    {"KDUpgradeSM93rev2", 296, Res(295), "KDUpgradeSM931"},
    {"KDVqUpgrader93rev2", 294, Res(293), "KDVqUpgrade931"},
    {"kdUpgradeWFM93rev2", 298, Res(297), "KDUpgradeWFM902"},
    {"kdUpgradeWFM931", 302, Res(301), "kdUpgradeWFM931"},
};

// The earlier contract's member: every class but the index class has it.
template <class T, class = void>
struct HasTablesToUpgrade : std::false_type {};
template <class T>
struct HasTablesToUpgrade<T, std::void_t<decltype(std::declval<T&>().TablesToUpgrade())>> : std::true_type {};
static_assert(HasTablesToUpgrade<KDVqUpgrader830>::value);
static_assert(!HasTablesToUpgrade<KDCreateTableIndices>::value);

UpgraderPtr (*Creator(const std::string& name))() {
    for (const UpgraderClass& c : UpgraderClasses()) {
        if (c.name == name) return c.create;
    }
    return nullptr;
}

TEST(EveryClass, NameAndDescription) {
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
        if (std::string(row.name) != "KDCreateTableIndices") {
            EXPECT_TRUE(upgrader->TablesToUpgrade().IsEmpty());
        }
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
        // 9.0.1 SP1 runs 8.3.3's Enabled inside its own: that tag follows.
        const std::string outermost = raised.substr(0, raised.find("\r\n"));
        EXPECT_EQ(outermost, readsLogin ? std::string(row.tagName) + "::IKDVqDatabaseUpgrader_Enabled" : "");
        if (readsLogin) {
            EXPECT_EQ(raised.substr(raised.rfind("\r\n") + 2), "Type mismatch");
        }
    }
}

// Execute without a connection fails under the class's Execute tag; the
// marking classes' Execute cannot fail.
TEST(EveryClass, ExecuteFailureCarriesTheClassTag) {
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.name);
        TestHost host;
        std::string raised;
        try {
            CallExecute(Creator(row.name)().Get(), host.Callback().Get());
        } catch (const automation::BasicError& e) {
            raised = e.Description();
        }
        const bool marks = std::string(row.name).rfind("KDHide", 0) == 0;
        EXPECT_EQ(raised.substr(0, raised.find("\r\n")),
                  marks ? "" : std::string(row.tagName) + "::IKDVqDatabaseUpgrader_Execute");
    }
}

}  // namespace
}  // namespace kdvq::testing
