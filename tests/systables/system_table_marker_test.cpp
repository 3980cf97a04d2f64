#include <gtest/gtest.h>

#include <algorithm>
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

// Each part's list, counted here only (the names are the code's own data):
// a new collection on every call, sorted by name.
TEST(SystemTableMarkers, ListsInOrderAndNewOnEveryCall) {
    const std::vector<std::pair<UpgraderPtr (*)(), size_t>> cases = {
        {New_KDHideVqTables, 25}, {New_KDHideSMTables, 6}, {New_KDHideWFMTables, 29}, {New_KDHideMobileTables, 4}};
    for (const auto& [create, count] : cases) {
        TestHost host;
        UpgraderPtr up = create();
        SCOPED_TRACE(up->ClassName());
        Variant first;
        Variant second;
        ASSERT_EQ(up->TavixSystemTables(&first), com::S_OK);
        ASSERT_EQ(up->TavixSystemTables(&second), com::S_OK);
        const std::vector<std::string> tables = Texts(first);
        EXPECT_EQ(tables.size(), count);
        EXPECT_TRUE(std::is_sorted(tables.begin(), tables.end()));
        EXPECT_EQ(Texts(second), tables);
        EXPECT_NE(automation::CollectionOf(first).Get(), automation::CollectionOf(second).Get());
    }
}

// Execute succeeds without an Enabled before it and touches nothing.
TEST(SystemTableMarkers, ExecuteTouchesNothing) {
    for (auto create : {New_KDHideVqTables, New_KDHideSMTables, New_KDHideWFMTables, New_KDHideMobileTables}) {
        TestHost host;
        UpgraderPtr up = create();
        SCOPED_TRACE(up->ClassName());
        EXPECT_TRUE(CallExecute(up.Get(), host.Callback().Get()));
        EXPECT_EQ(host.Log().Lines(), Lines{});
    }
}

}  // namespace
}  // namespace kdvq::testing
