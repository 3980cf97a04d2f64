#pragma once
// When an upgrader of the session, workflow or mobile part applies: from a
// lowest core version on, while the part's version lies from lowest up to
// (not including) below. A test of Enabled tries the points just inside
// and just outside each bound.
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "library/class_table.h"

namespace kdvq::testing {

// A bound the upgrader does not have.
constexpr int32_t kAny = std::numeric_limits<int32_t>::min();
// As a part version: the repository has no version table for the part.
constexpr int32_t kNoVersionTable = -1;

struct EnabledRange {
    const char* name;
    UpgraderPtr (*create)();
    int32_t coreMinimum;  // kAny: every core version
    int32_t lowest;       // kAny: every part version, a missing table too
    int32_t below;
    bool needsTables = false;  // Enabled tests tables of the part
};

struct EnabledPoint {
    std::string what;
    int32_t core;
    int32_t part;  // or kNoVersionTable
    bool enabled;
};

// The first point is the lowest one inside the range.
inline std::vector<EnabledPoint> BoundaryPoints(const EnabledRange& r) {
    const int32_t core = r.coreMinimum == kAny ? 0 : r.coreMinimum;
    const int32_t first = r.lowest == kAny ? kNoVersionTable : r.lowest;
    std::vector<EnabledPoint> points = {{"first part version", core, first, true},
                                        {"last part version", core, r.below - 1, true},
                                        {"part version past the range", core, r.below, false}};
    if (r.coreMinimum != kAny) points.push_back({"core version below the minimum", core - 1, first, false});
    if (r.lowest != kAny) points.push_back({"part version below the range", core, r.lowest - 1, false});
    return points;
}

// Enabled of a new upgrader on a repository at these versions, with the
// part's extension registered or not and the tables it tests there or not.
using EnabledOn =
    std::function<bool(UpgraderPtr (*create)(), int32_t core, int32_t part, bool registered, bool tables)>;

// Every boundary point with the extension and the tables there; unless
// only the versions count, also the first point inside without the
// extension (never enabled) and without the tables.
inline void ExpectEnabledRange(const EnabledRange& r, const EnabledOn& on, bool onlyVersions = false) {
    const std::vector<EnabledPoint> points = BoundaryPoints(r);
    for (const EnabledPoint& at : points) {
        SCOPED_TRACE(std::string(r.name) + ", " + at.what + " (core " + std::to_string(at.core) + ", part " +
                     std::to_string(at.part) + ")");
        EXPECT_EQ(on(r.create, at.core, at.part, true, true), at.enabled);
    }
    if (onlyVersions) return;
    SCOPED_TRACE(r.name);
    EXPECT_FALSE(on(r.create, points[0].core, points[0].part, false, true)) << "extension not registered";
    EXPECT_EQ(on(r.create, points[0].core, points[0].part, true, false), !r.needsTables) << "tables missing";
}

}  // namespace kdvq::testing
