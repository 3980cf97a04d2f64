// What all 31 classes share, one row a class in the order the library
// declares (and registers) them: Name and Description, the class name
// their error tags carry, and the chain of tags a failure carries from
// wherever it can start.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "library/class_table.h"
#include "platform/automation/basic_error.h"
#include "platform/automation/collection.h"
#include "tests/support/host_objects.h"
#include "tests/support/transcript_file.h"
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

UpgraderPtr (*Creator(const std::string& name))() {
    for (const UpgraderClass& c : UpgraderClasses()) {
        if (c.name == name) return c.create;
    }
    return nullptr;
}

TEST(EveryClass, NameDescriptionAndCategory) {
    ASSERT_EQ(std::size(kClasses), UpgraderClasses().size());
    for (const ClassRow& row : kClasses) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(std::string(UpgraderClasses()[&row - kClasses].name), row.name) << "declared order";
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
        // Registered in the upgrader category, once.
        Variant categories;
        ASSERT_EQ(upgrader->CategoriesToReg(&categories), com::S_OK);
        auto list = automation::CollectionOf(categories);
        ASSERT_TRUE(list);
        EXPECT_EQ(list->Count(), 1);
        EXPECT_EQ(list->Item(1), Variant(TestHost::UpgraderCategory()));
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

// ---- Error tags ----
// The chain of the report refused at position `from` of the transcript:
// its first line (the reporting handler's tag) and those of the reports
// that passed it on, each holding the one before (the first the refusal),
// outermost handler first: "A > B > C".
std::string TagChain(const Lines& transcript, size_t from) {
    std::string chain;
    std::string passedOn;  // what the next report holds when it continues the chain
    for (const std::string& line : From(transcript, std::min(from, transcript.size()))) {
        if (line.rfind("LOG ", 0) != 0) continue;
        const std::string message = line.substr(line.find("\\r\\n") + 4);
        const size_t tagEnd = message.find("\\r\\n");
        if (!chain.empty() && message.find(passedOn, tagEnd) == std::string::npos) break;
        passedOn = chain.empty() ? kRefusedReport : message;
        chain = message.substr(0, tagEnd) + (chain.empty() ? "" : " > " + chain);
    }
    return chain;
}

// How the scripted repository answers every query: one row whose columns
// are all those the routines read, no rows, or no such table.
enum class World { OneRow, NoRows, NoTables };

ado::ScriptedAnswer Answer(World world, const std::string& kind) {
    static const std::vector<std::string> kColumns = {
        "VERSION",  "NAME",    "ID",          "NODE_TYPE_ID",   "EXTENSION_ID", "USER_NAME", "USER_ID", "TRANSITION_ID",
        "STATE_ID", "ROLE_ID", "DATABASE_ID", "SEQUENCE_VALUE", "INCR",         "PACKET_ID", "NODE_ID", "IMPORT_STATE"};
    ado::ScriptedAnswer answer{{}, "", {kColumns, {}}};
    if (world == World::OneRow) {
        // A node type that belongs to an extension, an extension not yet
        // assigned, and 1 for the rest: the data migrations then look up
        // and write.
        std::vector<Variant> row;
        for (const std::string& c : kColumns)
            row.push_back(c == "NAME" ? Variant("Session") : c == "EXTENSION_ID" ? Variant::Null() : Variant(1));
        answer.rows.rows.push_back(row);
    }
    if (world == World::NoTables && kind == "OPEN") answer.nativeErrors = {942};
    return answer;
}

// One way to drive a class: Name, Description or CategoriesToReg alone, or
// Enabled and then Execute (whatever Enabled did, so that every routine is
// reached) on a dialect in a world.
struct Drive {
    std::string what;
    std::function<void(UpgraderBase&, TestHost&, ado::Connection*)> run;
};

std::vector<Drive> Drives() {
    std::vector<Drive> drives = {
        {"Name", [](UpgraderBase& u, TestHost&, ado::Connection*) { std::string s; u.Name(&s); }},
        {"Description", [](UpgraderBase& u, TestHost&, ado::Connection*) { std::string s; u.Description(&s); }},
        {"CategoriesToReg", [](UpgraderBase& u, TestHost&, ado::Connection*) { Variant v; u.CategoriesToReg(&v); }},
    };
    for (const Dialect& d : kDialects) {
        drives.push_back({d.Name(), [](UpgraderBase& u, TestHost& host, ado::Connection* cn) {
                              VARIANT_BOOL answer = 0;
                              int32_t version = 9999;
                              u.Enabled(host.Login(cn).Get(), &version, &answer);
                              u.Execute(host.Callback().Get(), &answer);
                          }});
    }
    return drives;
}

// Drives the class with call number failAt (counting statements, queries
// and requests to the host's services) failing and the report that follows
// refused, so that the failure climbs through every handler above it, even
// those that log and go on. Adds the chain that reaches the log; answers
// the number of calls.
int DriveFailingAt(const ClassRow& row, const Drive& drive, World world, int failAt, std::set<std::string>& chains) {
    TestHost host;
    host.SetRegistryValue("VersionName", "8.3");  // a base version to seed
    int calls = 0;
    size_t failedAt = SIZE_MAX;
    auto fails = [&] {
        if (++calls != failAt) return false;
        failedAt = host.Log().Lines().size();
        RefuseNextReport();
        return true;
    };
    SetHostServiceFailure(fails);
    ado::ScriptedProvider* p = nullptr;
    auto cn = host.ScriptedConnection(drive.what == "Oracle" ? kOracle : kSqlServer, &p);
    p->SetHandler([&](const std::string& kind, const std::string&) {
        ado::ScriptedAnswer answer = Answer(world, kind);
        if (fails()) answer.nativeErrors = {1};
        return std::optional(answer);
    });
    drive.run(*Creator(row.name)(), host, cn.Get());
    const std::string chain = TagChain(host.Log().Lines(), failedAt);
    if (!chain.empty()) chains.insert(std::string(row.name) + " " + drive.what + ": " + chain);
    return calls;
}

// Each class failing, in turn, each call it makes in each way it can be
// driven: the distinct chains of tags that reach the log.
TEST(EveryClass, ErrorTagChains) {
    std::set<std::string> chains;
    for (const ClassRow& row : kClasses) {
        for (const Drive& drive : Drives()) {
            for (World world : {World::OneRow, World::NoRows, World::NoTables}) {
                const int calls = DriveFailingAt(row, drive, world, 0, chains);
                for (int at = 1; at <= calls; ++at) DriveFailingAt(row, drive, world, at, chains);
            }
        }
    }
    ExpectTranscript("error tag chains", Lines(chains.begin(), chains.end()));
}

}  // namespace
}  // namespace kdvq::testing
