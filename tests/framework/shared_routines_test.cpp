// Table lists and primary keys, against the scripted provider.
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "platform/automation/collection.h"
#include "tests/support/upgrader_run.h"

namespace kdvq {
namespace {

using automation::Variant;

Variant TableList(const std::vector<std::string>& names) {
    auto list = automation::Collection::Create();
    for (const std::string& name : names) list->Add(Variant(name));
    return Variant(com::ComPtr<com::IUnknown>(list->Unknown()));
}

struct TablesCase {
    const char* name;
    Variant tables;
    bool result;
    std::vector<std::string> transcript;
};

TEST(CheckForTables, StopsAtTheFirstMissingTable) {
    const std::vector<TablesCase> cases = {
        {"Empty", Variant(), false, {}},
        {"not a collection", Variant("KD_SESSION"), false, {}},
        {"all present", TableList({"KD_SESSION", "KD_SESSION_MODS"}), true,
         {"OPEN SELECT * FROM KD_SESSION", "OPEN SELECT * FROM KD_SESSION_MODS"}},
        {"one missing", TableList({"KD_SESSION", "KD_MISSING", "KD_SESSION_MODS"}), false,
         {"OPEN SELECT * FROM KD_SESSION", "OPEN SELECT * FROM KD_MISSING => ERROR 942"}},
        {"empty list", TableList({}), true, {}},
    };
    for (const TablesCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::ScriptedRun run(testing::kSqlServer);
        run.provider->AnswerQuery("SELECT * FROM KD_SESSION", {});
        run.provider->AnswerQuery("SELECT * FROM KD_SESSION_MODS", {});
        EXPECT_EQ(CheckForTables(c.tables, run.cn.Get()), c.result);
        EXPECT_EQ(run.host.Log().Lines(), c.transcript);
    }
}

// Each pair's steps in both dialects are compared whole in the 9.3 rev2
// upgraders' transcripts; here what those do not reach.
TEST(AddPrimaryKeys, AnEmptyDictionaryAnswersFalseAndAFailedPairStopsTheRest) {
    const std::string notNull = "ALTER TABLE KD_VQ_TASKS MODIFY (TASK_ID NUMBER(38) NOT NULL)";
    for (bool empty : {true, false}) {
        SCOPED_TRACE(empty);
        testing::ScriptedRun run(testing::kOracle);
        run.provider->FailExecute(notNull, {942});
        auto keys = automation::Dictionary::Create();
        if (!empty) {
            keys->Add(Variant("KD_VQ_TASKS"), Variant("TASK_ID"));
            keys->Add(Variant("KD_VQ_ROLE"), Variant("ROLE_ID"));
        }
        EXPECT_FALSE(AddPrimaryKeys(run.host.Callback().Get(), run.cn.Get(), *keys, true));
        // The failed NOT NULL still tries its key; the next pair is not tried.
        EXPECT_EQ(run.host.Log().Lines(),
                  (empty ? testing::Lines{}
                         : testing::Lines{"START res512(TASK_ID,KD_VQ_TASKS)", "EXEC " + notNull + " => ERROR 942",
                                          testing::CommandFailure(1, notNull), "START res511(KD_VQ_TASKS)",
                                          "EXEC ALTER TABLE KD_VQ_TASKS ADD PRIMARY KEY (TASK_ID)", "DONE res102"}));
    }
}

TEST(AddPrimaryKeys, AFailureNamesThePairAndIsRaised) {
    testing::ScriptedRun run(testing::kSqlServer);
    auto keys = automation::Dictionary::Create();
    keys->Add(Variant("KD_VQ_USER"), Variant::Null());
    try {
        AddPrimaryKeys(run.host.Callback().Get(), run.cn.Get(), *keys, false);
        FAIL() << "not raised";
    } catch (const automation::BasicError& e) {
        EXPECT_EQ(e.Number(), 94);
        EXPECT_EQ(e.Description(),
                  "modMain::AddPrimaryKeys\r\nFailed to add primary key '' for table 'KD_VQ_USER'\r\nInvalid use of "
                  "Null");
    }
    EXPECT_EQ(run.host.Log().Lines(),
              std::vector<std::string>({"LOG 1 kdVqUpgraders:\\r\\nmodMain::AddPrimaryKeys\\r\\nFailed to add "
                                        "primary key '' for table 'KD_VQ_USER'\\r\\nInvalid use of Null"}));
}

}  // namespace
}  // namespace kdvq
