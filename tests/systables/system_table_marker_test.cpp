#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "library/class_table.h"
#include "platform/automation/collection.h"
#include "platform/ado/scripted/scripted_provider.h"
#include "platform/automation/basic_error.h"
#include "tests/support/host_objects.h"
#include "tests/support/transcript_file.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

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
        ScriptedRun run(kOracle);
        run.host.SetProbeAvailable(c.probe);
        ado::ScriptedRows rows{{"NAME"}, {}};
        for (const auto& e : c.extensions) rows.rows.push_back({e});
        run.provider->AnswerQuery("SELECT * FROM P_KD_VQ_SUPPORTED_EXTENSIONS", rows);

        UpgraderPtr up = c.create();
        // The version is not looked at.
        EXPECT_EQ(CallEnabled(up.Get(), run.host.Login(run.cn.Get(), "P_").Get(), 0), c.expected);
        EXPECT_EQ(run.host.Log().Lines(), c.lines);
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

const std::vector<UpgraderPtr (*)()> kMarkers = {New_KDHideVqTables, New_KDHideSMTables, New_KDHideWFMTables,
                                                 New_KDHideMobileTables};

// References the callback has beyond the caller's.
unsigned long ExtraReferences(IKDProgressCallback* callback) {
    callback->AddRef();
    return callback->Release() - 1;
}

// Each list name by name (transcripts/.../<class>-list.txt), a new
// collection on every call; Execute succeeds without an Enabled before it,
// touches nothing and keeps no reference to the callback.
TEST(SystemTableMarkers, ListsAndExecute) {
    for (auto create : kMarkers) {
        TestHost host;
        UpgraderPtr up = create();
        SCOPED_TRACE(up->ClassName());
        Variant first;
        Variant second;
        ASSERT_EQ(up->TavixSystemTables(&first), com::S_OK);
        ASSERT_EQ(up->TavixSystemTables(&second), com::S_OK);
        ExpectTranscript(up->ClassName() + " list", Texts(first));
        EXPECT_EQ(Texts(second), Texts(first));
        EXPECT_NE(automation::CollectionOf(first).Get(), automation::CollectionOf(second).Get());

        auto callback = host.Callback();
        const unsigned long before = ExtraReferences(callback.Get());
        EXPECT_TRUE(CallExecute(up.Get(), callback.Get()));
        EXPECT_EQ(ExtraReferences(callback.Get()), before);
        EXPECT_EQ(host.Log().Lines(), Lines{});
    }
}

// A login handing out no connection fails Enabled with "Type mismatch" and
// leaves the thread's extension cache unfilled: the next Enabled reads the
// table.
TEST(SystemTableMarkers, NoConnectionLeavesTheExtensionCacheAlone) {
    for (auto create : {New_KDHideSMTables, New_KDHideWFMTables}) {
        ScriptedRun run(kOracle);
        SCOPED_TRACE(create()->ClassName());
        auto notAConnection = automation::Collection::Create();
        EXPECT_THROW(CallEnabled(create().Get(), NewLoginHanding(notAConnection->Unknown()).Get(), 0),
                     automation::BasicError);
        run.provider->AnswerQuery("SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS",
                                  Rows("NAME", {"KDSessionManager", "KDWorkflowManager"}));
        const size_t logged = run.host.Log().Lines().size();
        EXPECT_TRUE(run.Enabled(create, 0));
        EXPECT_EQ(From(run.host.Log().Lines(), logged), Lines{"OPEN SELECT * FROM KD_VQ_SUPPORTED_EXTENSIONS"});
    }
}

}  // namespace
}  // namespace kdvq::testing
