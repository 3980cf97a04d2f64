// Find and Filter in the loops the data migrations run, over recordsets of
// tens of thousands of rows. They finish quickly only because equality
// criteria are answered from a column index; a scan per call would make
// these loops quadratic (over a billion row visits) and time the test out.
#include <gtest/gtest.h>

#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

constexpr int32_t kTransitions = 20000;
constexpr int32_t kTargets = 60000;

class FindScale : public ::testing::Test {
protected:
    void SetUp() override {
        connection_ = kdvq::testing::OpenSqlite(dir_.File("scale.db"));
        connection_->Execute("CREATE TABLE TS (TRANSITION_ID INT, NODE_TYPE_ID INT)");
        // Three target rows per transition, the first of each carrying id - 1.
        connection_->Execute(
            "INSERT INTO TS WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < " +
            std::to_string(kTargets - 1) + ") SELECT i % " + std::to_string(kTransitions) + " + 1, i FROM n");
    }

    kdvq::testing::TempDir dir_;
    com::ComPtr<ado::Connection> connection_;
};

TEST_F(FindScale, MoveFirstThenFindPerTransition) {
    com::ComPtr<ado::Recordset> targets =
        ado_test::OpenEditable(connection_.Get(), "SELECT TRANSITION_ID, NODE_TYPE_ID FROM TS");
    ASSERT_EQ(targets->RecordCount(), kTargets);
    int64_t sum = 0;
    int32_t missing = 0;
    for (int32_t id = 1; id <= kTransitions + 1; ++id) {
        targets->MoveFirst();
        targets->Find("TRANSITION_ID=" + std::to_string(id), 0, ado::adSearchForward);
        if (targets->EOF())
            ++missing;
        else
            sum += targets->Get("NODE_TYPE_ID").CLng();
    }
    EXPECT_EQ(missing, 1);  // the id past the last transition
    EXPECT_EQ(sum, int64_t{kTransitions} * (kTransitions - 1) / 2);
}

TEST_F(FindScale, FilterPerDesignWithAddNew) {
    com::ComPtr<ado::Recordset> states = ado_test::OpenEditable(connection_.Get(), "SELECT * FROM TS");
    int32_t added = 0;
    for (int32_t design = 1; design <= 2 * kTransitions; design += 2) {
        states->MoveFirst();
        states->SetFilter("TRANSITION_ID=" + std::to_string(design) + " AND NODE_TYPE_ID=" + std::to_string(design - 1));
        if (states->EOF()) {
            states->AddNew();
            states->Set("TRANSITION_ID", design);
            states->Set("NODE_TYPE_ID", design - 1);
            states->Update();
            ++added;
        }
        states->SetFilter("");
    }
    EXPECT_EQ(added, kTransitions / 2);  // designs beyond the transitions got rows
    EXPECT_EQ(states->RecordCount(), kTargets + added);
    EXPECT_EQ(kdvq::testing::QueryRows(connection_.Get(), "SELECT COUNT(*) FROM TS"),
              std::vector<std::string>{std::to_string(kTargets + added)});
}

}  // namespace
