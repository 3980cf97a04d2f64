// A repository of every release after 8.2 reaches the current versions and
// ends with the same tables, columns and indexes as the 8.2 sample upgraded
// (whose own upgrade is in runner_upgrade_test.cpp).
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reliability/repository_snapshot.h"
#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

const char kCurrentVersions[] = "core 4866, session 4866, workflow 5645, mobile 5129";

struct ReleaseCase {
    std::string release;
    std::string versions;  // as the sample holds them
};

void PrintTo(const ReleaseCase& value, std::ostream* out) { *out << value.release; }

class ReleaseUpgrade : public ::testing::TestWithParam<ReleaseCase> {
protected:
    // The 8.2 sample upgraded: what every other release must end as.
    static const Snapshot& Reference() {
        static Workbench bench;
        static const Snapshot reference = MakeTracedReference(bench).after;
        return reference;
    }
};

TEST_P(ReleaseUpgrade, ReachesTheCurrentVersionsWithTheSameSchema) {
    Workbench bench;
    std::string path = bench.Sample(GetParam().release, "repository.db");
    EXPECT_EQ(VersionsText(path), GetParam().versions);

    RunnerResult run = bench.Run(UpgradeArgs(path));
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(VersionsText(path), kCurrentVersions);

    Snapshot upgraded = TakeSnapshot(path);
    EXPECT_EQ(upgraded.tables, Reference().tables);
    EXPECT_EQ(upgraded.indexes, Reference().indexes);
}

INSTANTIATE_TEST_SUITE_P(
    Releases, ReleaseUpgrade,
    ::testing::Values(ReleaseCase{"8.3.0", "core 1206, session 1206, workflow 1206, mobile 0"},
                      // Session 8.3.3 stores 1944 itself before it asks for 1601, which
                      // cannot lower it.
                      ReleaseCase{"8.3.3", "core 1926, session 1944, workflow 2408, mobile 1601"},
                      ReleaseCase{"9.0.1 SP1", "core 2703, session 1944, workflow 2710, mobile 2408"},
                      ReleaseCase{"9.0.2", "core 2860, session 2769, workflow 2810, mobile 2756"},
                      ReleaseCase{"9.2.0", "core 4039, session 3324, workflow 2810, mobile 3035"},
                      ReleaseCase{"9.3 rev2", "core 4866, session 4866, workflow 5085, mobile 5129"}),
    [](const ::testing::TestParamInfo<ReleaseCase>& info) {
        std::string name;
        for (char c : info.param.release) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        return "Release_" + name;
    });

}  // namespace
}  // namespace kdhost::testing
