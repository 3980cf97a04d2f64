#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

struct Key {
    const char* table;
    const char* column;
};
const Key kKeys[] = {{"KD_VQ_TASKS", "TASK_ID"},           {"KD_VQ_SUPPORTED_EXTENSIONS", "ID"},
                     {"KD_VQ_ROLE", "ROLE_ID"},            {"KD_VQ_TRANSITION", "TRANSITION_ID"},
                     {"KD_VQ_STATE", "STATE_ID"},          {"KD_VQ_SUBTASKS", "SUBTASK_ID"},
                     {"KD_VQ_USER", "USER_ID"},            {"KD_VQ_MESSAGING", "ID"}};

std::string NotNull(const Key& k, bool oracle) {
    return std::string("ALTER TABLE ") + k.table + (oracle ? " MODIFY (" : " ALTER COLUMN ") + k.column +
           (oracle ? " NUMBER(38) NOT NULL)" : " INT NOT NULL");
}
std::string PrimaryKey(const Key& k) { return std::string("ALTER TABLE ") + k.table + " ADD PRIMARY KEY (" + k.column + ")"; }
std::string NotNullText(const Key& k) { return std::string("res512(") + k.column + "," + k.table + ")"; }
std::string KeyText(const Key& k) { return std::string("res511(") + k.table + ")"; }

// The key steps of the first count tables, all succeeding.
Lines KeysAdded(bool oracle, size_t count) {
    Lines lines;
    for (size_t i = 0; i < count; ++i) {
        lines = Join({lines, Step(NotNullText(kKeys[i]), NotNull(kKeys[i], oracle)),
                        Step(KeyText(kKeys[i]), PrimaryKey(kKeys[i]))});
    }
    return lines;
}

const Script VersionRow = CoreRepository(4039);

TEST(KDVqUpgrader93rev2, ScriptedSituations) {
    const std::vector<ScriptedCase> cases = {
        {"oracle, no keys yet", kOracle, 4039, VersionRow, "True",
         Join({KeysAdded(true, 8), {"DONE res102"}, CoreVersionWritten(4866)})},
        {"sql server, no keys yet", kSqlServer, 4865, VersionRow, "True",
         Join({KeysAdded(false, 8), {"DONE res102"}, CoreVersionWritten(4866)})},
        {"sql server, duplicate ids stop the keys", kSqlServer, 4039,
         [](auto& p) {
             VersionRow(p);
             p.FailExecute(PrimaryKey(kKeys[2]), {1505});
         },
         "False",
         Join({KeysAdded(false, 2), Step(NotNullText(kKeys[2]), NotNull(kKeys[2], false)),
                 FailedStep(KeyText(kKeys[2]), PrimaryKey(kKeys[2]), 1505, 1)})},
    };
    ExpectScripted(New_KDVqUpgrader93rev2, cases);
}

// A failure names the last numbered step Execute reached.
TEST(KDVqUpgrader93rev2, FailureReportsTheStepLine) {
    TestHost host;
    UpgraderPtr upgrader = New_KDVqUpgrader93rev2();
    EXPECT_THROW(CallExecute(upgrader.Get(), host.Callback().Get()), automation::BasicError);
    EXPECT_EQ(host.Log().Lines(),
              Lines{"LOG 1 kdVqUpgraders:\\r\\nKDVqUpgrade931::IKDVqDatabaseUpgrader_Execute\\r\\n"
                    "Object variable or With block variable not set\\r\\nError at line: 22 - Build: 9.3.1"});
}

}  // namespace
}  // namespace kdvq::testing
