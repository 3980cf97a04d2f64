// The scaled sample: the limits of its counts, rows the upgraders can work
// on (unique ids, consistent links), and scales it cannot be grown to.
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "host/bad_input.h"
#include "host/sample_scale.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

// The subtasks stay below the 16-bit counter at any scale; the smallest
// scale keeps one row of each kind.
TEST(SampleScale, CountsStayWithinTheirLimits) {
    EXPECT_EQ(ScaledCounts(10).subtasks, kMaxSampleSubtasks);
    const SampleScaleCounts tiny = ScaledCounts(1e-6);
    EXPECT_EQ(std::min({tiny.transitions, tiny.roles, tiny.users, tiny.historyRows, tiny.subtasks}), 1);
}

TEST(SampleScale, RowsAreConsistentForTheUpgraders) {
    kdvq::testing::TempDir folder;
    std::string path = folder.File("scaled.db");
    CreateScaledSample("8.2", path, 0.02);
    auto db = kdvq::testing::OpenSqlite(path);
    EXPECT_EQ(kdvq::testing::QueryRows(db.Get(), "PRAGMA integrity_check"), std::vector<std::string>{"'ok'"});
    // Each query counts the rows that break one rule (duplicate state,
    // transition and role ids fail the upgrade of helper_index_run_test).
    const struct {
        const char* what;
        const char* sql;
    } checks[] = {
        {"duplicate user names", "SELECT COUNT(*) - COUNT(DISTINCT USER_NAME) FROM KD_VQ_USER"},
        {"duplicate design ids", "SELECT COUNT(*) - COUNT(DISTINCT ID) FROM KD_WMS_DESIGN"},
        {"transitions without 1 to 3 targets",
         "SELECT COUNT(*) FROM (SELECT t.TRANSITION_ID, COUNT(ts.STATE_ID) n FROM KD_VQ_TRANSITION t "
         "LEFT JOIN KD_VQ_TRANSITION_TO_STATE ts ON ts.TRANSITION_ID = t.TRANSITION_ID GROUP BY t.TRANSITION_ID) "
         "WHERE n < 1 OR n > 3"},
        {"targets of another state's node type",
         "SELECT COUNT(*) FROM (SELECT ts.TRANSITION_ID FROM KD_VQ_TRANSITION_TO_STATE ts JOIN KD_VQ_STATE s "
         "ON s.STATE_ID = ts.STATE_ID GROUP BY ts.TRANSITION_ID HAVING COUNT(DISTINCT s.NODE_TYPE_ID) > 1)"},
        {"links to missing states",
         "SELECT COUNT(*) FROM KD_VQ_STATE_ROLE sr WHERE NOT EXISTS "
         "(SELECT 1 FROM KD_VQ_STATE s WHERE s.STATE_ID = sr.STATE_ID)"},
        {"states of node types without an extension",
         "SELECT COUNT(*) FROM KD_VQ_STATE WHERE NODE_TYPE_ID NOT BETWEEN 1 AND 12"},
        {"generated roles whose states span both extensions",
         "SELECT COUNT(*) FROM (SELECT sr.ROLE_ID FROM KD_VQ_STATE_ROLE sr JOIN KD_VQ_STATE s "
         "ON s.STATE_ID = sr.STATE_ID WHERE sr.ROLE_ID > 5 GROUP BY sr.ROLE_ID "
         "HAVING MIN(s.NODE_TYPE_ID <= 4) <> MAX(s.NODE_TYPE_ID <= 4))"},
    };
    for (const auto& check : checks) {
        EXPECT_EQ(kdvq::testing::QueryRows(db.Get(), check.sql), std::vector<std::string>{"0"}) << check.what;
    }
}

TEST(SampleScale, RefusesWhatCannotBeGrownAndLeavesNoFile) {
    kdvq::testing::TempDir folder;
    const struct {
        const char* release;
        double scale;
    } cases[] = {
        {"8.2", 0},
        {"8.2", -1},
        {"8.2", std::numeric_limits<double>::quiet_NaN()},
        {"8.2", std::numeric_limits<double>::infinity()},
        {"9.0.2", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.release) + " " + std::to_string(c.scale));
        std::string path = folder.File("refused.db");
        EXPECT_THROW(CreateScaledSample(c.release, path, c.scale), BadInput);
        EXPECT_NE(::access(path.c_str(), F_OK), 0);
    }
}

}  // namespace
}  // namespace kdhost::testing
