#pragma once
// What every session upgrader shares: the session schema version read from
// KD_SESSION_DB_VERSION, and the Enabled test built from the registration of
// the session extension, the presence of the session tables, a minimum core
// version and a range of session versions.
#include <cstdint>
#include <limits>
#include <string>

#include "framework/upgrader_base.h"

namespace kdvq {

// The conditions under which a session upgrader applies.
struct SessionGate {
    bool needsTables;      // KD_SESSION and KD_SESSION_DB_VERSION must exist
    int32_t coreMinimum;   // lowest core version accepted
    int32_t lowest;        // lowest session version accepted
    int32_t below;         // first session version no longer accepted
};

constexpr int32_t kAnyVersion = std::numeric_limits<int32_t>::min();

class SessionUpgrader : public UpgraderBase {
protected:
    SessionUpgrader(std::string className, std::string tagName) : UpgraderBase(std::move(className), std::move(tagName)) {}

    virtual SessionGate Gate() const = 0;
    bool OnEnabled(IKDLogin* login, int32_t& version) override;
    std::string VersionTable() const override { return "KD_SESSION_DB_VERSION"; }

    // The session schema version as Enabled last read it.
    int32_t sessionVersion_ = 0;
};

}  // namespace kdvq
