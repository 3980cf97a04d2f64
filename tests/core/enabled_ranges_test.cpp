// Which repository versions each core upgrader applies to: the bounds of
// every range, with a scripted connection that answers nothing.
#include "tests/core/core_test_support.h"

namespace kdvq::testing {
namespace {

struct RangeCase {
    const char* name;
    UpgraderPtr (*create)();
    int32_t version;
    bool enabled;
};

TEST(CoreUpgraders, EnabledOnlyInsideTheirVersionRange) {
    const std::vector<RangeCase> cases = {
        {"8.3.0 below", New_KDVqUpgrader830, -5, true},
        {"8.3.0 last", New_KDVqUpgrader830, 1205, true},
        {"8.3.0 own version", New_KDVqUpgrader830, 1206, false},
        {"8.3.2 below", New_KDVqUpgrader832, 1205, false},
        {"8.3.2 first", New_KDVqUpgrader832, 1206, true},
        {"8.3.2 last", New_KDVqUpgrader832, 1600, true},
        {"8.3.2 own version", New_KDVqUpgrader832, 1601, false},
        {"8.3.3 below", New_KDVqUpgrader833, 1600, false},
        {"8.3.3 first", New_KDVqUpgrader833, 1601, true},
        {"8.3.3 last", New_KDVqUpgrader833, 1925, true},
        {"8.3.3 own version", New_KDVqUpgrader833, 1926, false},
        {"9.0.1 SP1 below", New_KDVqUpgrader901sp1, 1925, false},
        {"9.0.1 SP1 first", New_KDVqUpgrader901sp1, 1926, true},
        {"9.0.1 SP1 last", New_KDVqUpgrader901sp1, 2702, true},
        {"9.0.1 SP1 own version", New_KDVqUpgrader901sp1, 2703, false},
        {"9.0.2 below", New_KDVqUpgrader902, 2702, false},
        {"9.0.2 first", New_KDVqUpgrader902, 2703, true},
        {"9.0.2 last", New_KDVqUpgrader902, 2859, true},
        {"9.0.2 own version", New_KDVqUpgrader902, 2860, false},
        {"9.1.2 below", New_KDVqUpgrader912, 2859, false},
        {"9.1.2 first", New_KDVqUpgrader912, 2860, true},
        {"9.1.2 last", New_KDVqUpgrader912, 3353, true},
        {"9.1.2 own version", New_KDVqUpgrader912, 3354, false},
        {"9.2.0 below", New_KDVqUpgrader920, 3353, false},
        {"9.2.0 first", New_KDVqUpgrader920, 3354, true},
        {"9.2.0 last", New_KDVqUpgrader920, 4038, true},
        {"9.2.0 own version", New_KDVqUpgrader920, 4039, false},
        {"9.3 rev2 below", New_KDVqUpgrader93rev2, 4038, false},
        {"9.3 rev2 first", New_KDVqUpgrader93rev2, 4039, true},
        {"9.3 rev2 last", New_KDVqUpgrader93rev2, 4865, true},
        {"9.3 rev2 own version", New_KDVqUpgrader93rev2, 4866, false},
        {"indices on an empty repository", New_KDCreateTableIndices, 0, true},
        {"indices on the newest repository", New_KDCreateTableIndices, 99999, true},
    };
    for (const RangeCase& c : cases) {
        SCOPED_TRACE(c.name);
        TestHost host;
        auto connection = host.ScriptedConnection(kOracle);
        UpgraderPtr upgrader = c.create();
        EXPECT_EQ(CallEnabled(upgrader.Get(), host.Login(connection.Get()).Get(), c.version), c.enabled);
        // Enabled only takes the login; it reads nothing.
        EXPECT_EQ(host.Log().Lines(), Lines{});
    }
}

}  // namespace
}  // namespace kdvq::testing
