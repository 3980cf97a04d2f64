// The --json documents: a failure's tags and reason apart, text that is
// not UTF-8, and the refusal document.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/failure_description.h"
#include "host/json_reports.h"
#include "tests/host/json_document.h"

namespace kdhost::testing {
namespace {

struct SplitCase {
    std::string name;
    std::string description;
    std::vector<std::string> tags;
    std::string reason;
};

void PrintTo(const SplitCase& value, std::ostream* out) { *out << value.name; }

class FailureSplit : public ::testing::TestWithParam<SplitCase> {};

TEST_P(FailureSplit, SeparatesTheTagChainFromTheReason) {
    FailureDescription parts = SplitFailureDescription(GetParam().description);
    EXPECT_EQ(parts.tags, GetParam().tags);
    EXPECT_EQ(parts.reason, GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Descriptions, FailureSplit,
    ::testing::Values(
        SplitCase{"TwoTagsThenTheMessage",
                  "KDVqUpgrader830::IKDVqDatabaseUpgrader_Execute\r\nKDVqUpgrader830::UpgradeOracle\r\n"
                  "no such table: KD_VQ_NODE",
                  {"KDVqUpgrader830::IKDVqDatabaseUpgrader_Execute", "KDVqUpgrader830::UpgradeOracle"},
                  "no such table: KD_VQ_NODE"},
        SplitCase{"LineNumberStaysWithTheReason",
                  "modMain::UpdateDatabaseId\r\nconstraint failed\r\nError at line: 12 - Build: 9.3",
                  {"modMain::UpdateDatabaseId"},
                  "constraint failed\nError at line: 12 - Build: 9.3"},
        SplitCase{"NoTagAtAll", "the transaction could not be begun", {}, "the transaction could not be begun"},
        // A message that mentions a tag is no tag: only whole lines count.
        SplitCase{"TagInsideAMessageLine",
                  "KDVqUpgrade902::UpdateHistory\r\nnear KDVqUpgrade902::X: syntax error",
                  {"KDVqUpgrade902::UpdateHistory"},
                  "near KDVqUpgrade902::X: syntax error"},
        SplitCase{"TagsAfterTheMessageAreReason", "disk full\r\nKDVqUpgrade931::UpgradeOracle", {},
                  "disk full\nKDVqUpgrade931::UpgradeOracle"},
        SplitCase{"LoneLineFeeds", "KDHideSMTables::IKDVqDatabaseUpgrader_Execute\nlocked", 
                  {"KDHideSMTables::IKDVqDatabaseUpgrader_Execute"}, "locked"},
        SplitCase{"Empty", "", {}, ""}),
    [](const ::testing::TestParamInfo<SplitCase>& info) { return info.param.name; });

// The failed call and the exit status are read by the fault-point runs.
TEST(UpgradeJsonDocument, FailureCarriesItsReasonAndTagsAndSurvivesBytesThatAreNotUtf8) {
    RunResult run;
    UpgraderOutcome failed;
    failed.className = "KDVqUpgrader830";
    failed.pass = 1;
    failed.failure = true;
    failed.failedCall = "Execute";
    failed.error = "KDVqUpgrader830::IKDVqDatabaseUpgrader_Execute\r\nKDVqUpgrader830::UpgradeOracle\r\n"
                   "Fehler \xE4 in Zeile";  // a driver's message in Latin-1
    failed.seconds = 0.0123456;
    run.outcomes.push_back(failed);
    run.passes = 1;

    Json document = ParseJson(UpgradeJson("repo.db", {4039, 0, 0, 0}, {4039, 0, 0, 0}, run, 1));
    const Json& upgrader = document.at("upgraders").at(0);
    EXPECT_EQ(upgrader.at("tags"), Json::array({"KDVqUpgrader830::IKDVqDatabaseUpgrader_Execute",
                                                "KDVqUpgrader830::UpgradeOracle"}));
    EXPECT_EQ(upgrader.at("reason"), "Fehler \xEF\xBF\xBD in Zeile");
    EXPECT_DOUBLE_EQ(upgrader.at("duration_ms").get<double>(), 12.346);
    EXPECT_FALSE(document.at("succeeded").get<bool>());
}

TEST(StatusJsonDocument, AFailedEnabledTestCarriesItsReason) {
    Json document = ParseJson(StatusJson("repo.db", {1100, 0, 0, 0},
                                         {{"KDVqUpgrader830", false, "KDVqUpgrader830::IKDVqDatabaseUpgrader_"
                                                                     "Enabled\r\nno such table: KD_VQ_DB_VERSION"},
                                          {"KDVqUpgrader832", true, ""}}));
    const Json& failed = document.at("upgraders").at(0);
    EXPECT_EQ(Keys(failed), (std::vector<std::string>{"class", "enabled", "always_runs", "error", "reason", "tags"}));
    EXPECT_EQ(failed.at("reason"), "no such table: KD_VQ_DB_VERSION");
    EXPECT_EQ(Keys(document.at("upgraders").at(1)), (std::vector<std::string>{"class", "enabled", "always_runs"}));
}

}  // namespace
}  // namespace kdhost::testing
