// Table lists and primary keys, against the scripted provider.
#include <gtest/gtest.h>

#include "framework/mod_main.h"
#include "platform/automation/collection.h"
#include "tests/support/test_host.h"

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
        testing::TestHost host;
        ado::ScriptedProvider* provider = nullptr;
        auto connection = host.ScriptedConnection("SQLOLEDB", &provider);
        provider->AnswerQuery("SELECT * FROM KD_SESSION", {});
        provider->AnswerQuery("SELECT * FROM KD_SESSION_MODS", {});
        EXPECT_EQ(CheckForTables(c.tables, connection.Get()), c.result);
        EXPECT_EQ(host.Log().Lines(), c.transcript);
    }
}

struct KeysCase {
    const char* name;
    std::vector<std::pair<std::string, std::string>> keys;
    bool oracle;
    std::vector<std::pair<std::string, std::vector<int32_t>>> failures;
    bool result;
    std::vector<std::string> transcript;
};

TEST(AddPrimaryKeys, RunsEachPairAndStopsAtAFailedOne) {
    const std::vector<std::pair<std::string, std::string>> twoTables = {{"KD_VQ_TASKS", "TASK_ID"},
                                                                         {"KD_VQ_ROLE", "ROLE_ID"}};
    const std::vector<std::string> oracleTasks = {
        "START res512(TASK_ID,KD_VQ_TASKS)", "EXEC ALTER TABLE KD_VQ_TASKS MODIFY (TASK_ID NUMBER(38) NOT NULL)",
        "DONE res102",
        "START res511(KD_VQ_TASKS)",
        "EXEC ALTER TABLE KD_VQ_TASKS ADD PRIMARY KEY (TASK_ID)",
        "DONE res102"};
    auto with = [](std::vector<std::string> lines, const std::vector<std::string>& more) {
        lines.insert(lines.end(), more.begin(), more.end());
        return lines;
    };
    const std::vector<KeysCase> cases = {
        {"empty dictionary makes no call", {}, true, {}, false, {}},
        {"Oracle", twoTables, true, {}, true,
         with(oracleTasks,
              {"START res512(ROLE_ID,KD_VQ_ROLE)", "EXEC ALTER TABLE KD_VQ_ROLE MODIFY (ROLE_ID NUMBER(38) NOT NULL)",
               "DONE res102", "START res511(KD_VQ_ROLE)", "EXEC ALTER TABLE KD_VQ_ROLE ADD PRIMARY KEY (ROLE_ID)",
               "DONE res102", "DONE res102"})},
        {"SQL Server", {{"KD_VQ_ROLE", "ROLE_ID"}}, false, {}, true,
         {"START res512(ROLE_ID,KD_VQ_ROLE)", "EXEC ALTER TABLE KD_VQ_ROLE ALTER COLUMN ROLE_ID INT NOT NULL",
          "DONE res102", "START res511(KD_VQ_ROLE)", "EXEC ALTER TABLE KD_VQ_ROLE ADD PRIMARY KEY (ROLE_ID)",
          "DONE res102", "DONE res102"}},
        {"failed NOT NULL still tries the key, then stops", twoTables, true,
         {{"ALTER TABLE KD_VQ_TASKS MODIFY (TASK_ID NUMBER(38) NOT NULL)", {942}}}, false,
         {"START res512(TASK_ID,KD_VQ_TASKS)",
          "EXEC ALTER TABLE KD_VQ_TASKS MODIFY (TASK_ID NUMBER(38) NOT NULL) => ERROR 942",
          "LOG 1 kdVqUpgraders:\\r\\nmodMain::DoCommand\\r\\n-2147217900: scripted failure\\r\\nCommand: ALTER TABLE "
          "KD_VQ_TASKS MODIFY (TASK_ID NUMBER(38) NOT NULL)",
          "START res511(KD_VQ_TASKS)", "EXEC ALTER TABLE KD_VQ_TASKS ADD PRIMARY KEY (TASK_ID)", "DONE res102"}},
    };
    for (const KeysCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::TestHost host;
        ado::ScriptedProvider* provider = nullptr;
        auto connection = host.ScriptedConnection(c.oracle ? "OraOLEDB.Oracle" : "SQLOLEDB", &provider);
        for (const auto& [sql, errors] : c.failures) provider->FailExecute(sql, errors);
        auto keys = automation::Dictionary::Create();
        for (const auto& [table, column] : c.keys) keys->Add(Variant(table), Variant(column));
        EXPECT_EQ(AddPrimaryKeys(host.Callback().Get(), connection.Get(), *keys, c.oracle), c.result);
        EXPECT_EQ(host.Log().Lines(), c.transcript);
    }
}

TEST(AddPrimaryKeys, AFailureNamesThePairAndIsRaised) {
    testing::TestHost host;
    ado::ScriptedProvider* provider = nullptr;
    auto connection = host.ScriptedConnection("SQLOLEDB", &provider);
    auto keys = automation::Dictionary::Create();
    keys->Add(Variant("KD_VQ_USER"), Variant::Null());
    try {
        AddPrimaryKeys(host.Callback().Get(), connection.Get(), *keys, false);
        FAIL() << "not raised";
    } catch (const automation::BasicError& e) {
        EXPECT_EQ(e.Number(), 94);
        EXPECT_EQ(e.Description(),
                  "modMain::AddPrimaryKeys\r\nFailed to add primary key '' for table 'KD_VQ_USER'\r\nInvalid use of "
                  "Null");
    }
    EXPECT_EQ(host.Log().Lines(),
              std::vector<std::string>({"LOG 1 kdVqUpgraders:\\r\\nmodMain::AddPrimaryKeys\\r\\nFailed to add "
                                        "primary key '' for table 'KD_VQ_USER'\\r\\nInvalid use of Null"}));
}

}  // namespace
}  // namespace kdvq
