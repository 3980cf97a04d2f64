// When each upgrader applies: a range of core versions for the core
// upgraders; for the session, workflow and mobile upgraders a core version
// minimum, a range of the part's versions, and for the first two the
// part's extension registered and the part's tables there. Each range is
// tried just inside and just outside each of its bounds.
#include <cctype>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

// A bound the upgrader does not have.
constexpr int32_t kAny = std::numeric_limits<int32_t>::min();
// As a part version: the repository has no version table for the part.
constexpr int32_t kNoVersionTable = -1;

// What Enabled of a part's upgraders reads.
struct Part {
    const char* extension;  // nullptr: the part asks for no registration
    const char* versionTable;  // nullptr: the core version is the one given to Enabled
    std::vector<const char*> tables;  // tested by the upgraders marked needsTables
};

const Part kCore = {nullptr, nullptr, {}};
const Part kSession = {"KDSessionManager", "KD_SESSION_DB_VERSION", {"KD_SESSION"}};
const Part kWorkflow = {"KDWorkflowManager", "KD_WMS_DB_VERSION",
                        {"KD_WMS_DESIGN", "KD_WMS_WORK_REQUEST", "KD_WMS_WORK_FUNCTION"}};
const Part kMobile = {nullptr, "KD_MOBILE_DB_VERSION", {}};

// The upgrader applies from coreMinimum on, while the part's version lies
// from lowest up to (not including) below. A core upgrader's range is one
// of core versions: its lowest and below.
struct EnabledRange {
    const Part& part;
    const char* name;
    UpgraderPtr (*create)();
    int32_t coreMinimum;  // kAny: every core version
    int32_t lowest;       // kAny: every part version, a missing table too
    int32_t below;        // kAny: no upper bound
    bool needsTables = false;
};

// Enabled of a new upgrader on a repository at these versions, with the
// part's extension registered or not and its tables there or not. The
// other parts' extensions are always registered, with the part's own
// name in other letter case.
bool EnabledOn(const EnabledRange& r, int32_t core, int32_t part, bool registered = true, bool tables = true) {
    ScriptedRun run(kOracle);
    if (&r.part == &kCore) {
        const bool enabled = run.Enabled(r.create, part);
        // Enabled only takes the login; it reads nothing.
        EXPECT_EQ(run.host.Log().Lines(), Lines{});
        return enabled;
    }
    ScriptedRepository repo(run.provider);
    std::vector<std::vector<Variant>> extensions;
    for (const Part* other : {&kSession, &kWorkflow}) {
        if (other != &r.part) extensions.push_back({Variant(other->extension)});
    }
    if (registered && r.part.extension) {
        std::string lower = r.part.extension;
        for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        extensions.push_back({Variant(lower)});
    }
    repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, extensions);
    if (tables) {
        for (const char* table : r.part.tables) repo.Table(table, {"ID"});
    }
    if (part != kNoVersionTable) repo.Version(r.part.versionTable, part);
    return run.Enabled(r.create, core);
}

struct EnabledPoint {
    std::string what;
    int32_t core;
    int32_t part;  // or kNoVersionTable
    bool enabled;
};

// The first point is the lowest one inside the range.
std::vector<EnabledPoint> BoundaryPoints(const EnabledRange& r) {
    const int32_t core = r.coreMinimum == kAny ? 0 : r.coreMinimum;
    const int32_t first = r.lowest == kAny ? kNoVersionTable : r.lowest;
    const int32_t last = r.below == kAny ? 99999 : r.below - 1;
    std::vector<EnabledPoint> points = {{"first part version", core, first, true},
                                        {"last part version", core, last, true}};
    if (r.below != kAny) points.push_back({"part version past the range", core, r.below, false});
    if (r.coreMinimum != kAny) points.push_back({"core version below the minimum", core - 1, first, false});
    if (r.lowest != kAny) {
        points.push_back({"part version below the range", core, r.lowest - 1, false});
        // Without its version table a part is at version 0.
        if (r.part.versionTable) points.push_back({"no version table", core, kNoVersionTable, false});
    }
    return points;
}

TEST(Upgraders, EnabledOnlyInsideTheirRanges) {
    const EnabledRange ranges[] = {
        {kCore, "core 8.3.0", New_KDVqUpgrader830, kAny, kAny, 1206},
        {kCore, "core 8.3.2", New_KDVqUpgrader832, kAny, 1206, 1601},
        {kCore, "core 8.3.3", New_KDVqUpgrader833, kAny, 1601, 1926},
        {kCore, "core 9.0.1 SP1", New_KDVqUpgrader901sp1, kAny, 1926, 2703},
        {kCore, "core 9.0.2", New_KDVqUpgrader902, kAny, 2703, 2860},
        {kCore, "core 9.1.2", New_KDVqUpgrader912, kAny, 2860, 3354},
        {kCore, "core 9.2.0", New_KDVqUpgrader920, kAny, 3354, 4039},
        {kCore, "core 9.3 rev2", New_KDVqUpgrader93rev2, kAny, 4039, 4866},
        {kCore, "core indices, always", New_KDCreateTableIndices, kAny, kAny, kAny},
        // The session upgraders that test tables test KD_SESSION.
        {kSession, "session 8.3.0", New_KDUpgradeSM830, 1206, kAny, 1206},
        {kSession, "session 8.3.3", New_KDUpgraderSM833, 1926, 1206, 1601, true},
        {kSession, "session 9.0.2", New_KDUpgraderSM902, 2860, 1601, 2769, true},
        {kSession, "session 9.1.2", New_KDUpgradeSM912, 2860, 1601, 3324, true},
        {kSession, "session 9.2.1", New_KDUpgradeSM921, kAny, 3324, 4511},
        {kSession, "session 9.3 rev2", New_KDUpgradeSM93rev2, kAny, 4511, 4866},
        // Workflow 8.3.2 tests the design tables, 8.3.3 the work functions.
        {kWorkflow, "workflow 8.3.0", New_KDUpgradeWFM830, 1206, kAny, 1206},
        {kWorkflow, "workflow 8.3.2", New_KDUpgradeWFM832, 1601, 1206, 1601, true},
        {kWorkflow, "workflow 8.3.3", New_KDUpgradeWFM833, 1926, 1601, 2408, true},
        {kWorkflow, "workflow 9.0.1 SP1", New_KDUpgradeWFM901sp1, 2703, 2408, 2710},
        {kWorkflow, "workflow 9.0.2", New_KDUpgradeWFM902, 2860, 2710, 2810},
        {kWorkflow, "workflow 9.3 rev2", New_kdUpgradeWFM93rev2, 4039, 2810, 5085},
        {kWorkflow, "workflow 9.3.1", New_kdUpgradeWFM931, 4866, 5085, 5645},
        {kMobile, "mobile 8.3.2", New_KDUpgradeMobile832, 1601, kAny, 1601},
        {kMobile, "mobile 9.0.1", New_KDUpgradeMobile901, 2703, 1601, 2408},
        {kMobile, "mobile 9.0.2", New_KDUpgradeMobile902, 2860, 2408, 2756},
        {kMobile, "mobile 9.1 SP1", New_KDUpgradeMobile91SP1, 2860, 2756, 3035},
        {kMobile, "mobile 9.3 rev2", New_KDUpgradeMobile93rev2, kAny, 3035, 5129},
    };
    for (const EnabledRange& r : ranges) {
        const std::vector<EnabledPoint> points = BoundaryPoints(r);
        for (const EnabledPoint& at : points) {
            SCOPED_TRACE(std::string(r.name) + ", " + at.what + " (core " + std::to_string(at.core) + ", part " +
                         std::to_string(at.part) + ")");
            EXPECT_EQ(EnabledOn(r, at.core, at.part), at.enabled);
        }
        if (!r.part.extension) continue;
        SCOPED_TRACE(r.name);
        EXPECT_FALSE(EnabledOn(r, points[0].core, points[0].part, false)) << "extension not registered";
        EXPECT_EQ(EnabledOn(r, points[0].core, points[0].part, true, false), !r.needsTables) << "tables missing";
    }
}

// Mobile 9.0.1 reads the mobile version only once the core version
// suffices; the later upgraders read it first.
TEST(MobileEnabledReads, VersionOnlyWhenCoreSufficesFor901) {
    ScriptedRun run(kSqlServer);
    ScriptedRepository(run.provider).Version("KD_MOBILE_DB_VERSION", 2500);
    EXPECT_FALSE(run.Enabled(New_KDUpgradeMobile901, 2702));
    EXPECT_FALSE(run.Enabled(New_KDUpgradeMobile902, 2859));
    EXPECT_EQ(run.host.Log().Lines(), Lines{"OPEN select VERSION from KD_MOBILE_DB_VERSION"});
}

}  // namespace
}  // namespace kdvq::testing
