// Which repository versions each core upgrader applies to: the bounds of
// every range, with a scripted connection that answers nothing.
#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

// An upgrader applies from first up to last; 8.3.0 has no lower bound.
struct Range {
    const char* name;
    UpgraderPtr (*create)();
    int32_t first, last;
};

TEST(CoreUpgraders, EnabledOnlyInsideTheirVersionRange) {
    const Range ranges[] = {
        {"8.3.0", New_KDVqUpgrader830, -5, 1205},          {"8.3.2", New_KDVqUpgrader832, 1206, 1600},
        {"8.3.3", New_KDVqUpgrader833, 1601, 1925},        {"9.0.1 SP1", New_KDVqUpgrader901sp1, 1926, 2702},
        {"9.0.2", New_KDVqUpgrader902, 2703, 2859},        {"9.1.2", New_KDVqUpgrader912, 2860, 3353},
        {"9.2.0", New_KDVqUpgrader920, 3354, 4038},        {"9.3 rev2", New_KDVqUpgrader93rev2, 4039, 4865},
        {"indices, always", New_KDCreateTableIndices, 0, 99999},
    };
    for (const Range& r : ranges) {
        const bool bounded = r.create != New_KDCreateTableIndices;
        for (const auto& [version, enabled] : std::vector<std::pair<int32_t, bool>>{
                 {r.first - 1, !bounded || r.first < 0}, {r.first, true}, {r.last, true}, {r.last + 1, !bounded}}) {
            SCOPED_TRACE(std::string(r.name) + " at " + std::to_string(version));
            ScriptedRun run(kOracle);
            EXPECT_EQ(run.Enabled(r.create, version), enabled);
            // Enabled only takes the login; it reads nothing.
            EXPECT_EQ(run.host.Log().Lines(), Lines{});
        }
    }
}

}  // namespace
}  // namespace kdvq::testing
