#pragma once
// Session extension, release 9.2.1: points the sketch-layer subtask at its
// new implementing class.
#include "session/session_upgrader.h"

namespace kdvq {

class KDUpgradeSM921 : public SessionUpgrader {
public:
    KDUpgradeSM921() : SessionUpgrader("KDUpgradeSM921", "KDUpgradeSM921") {}

protected:
    SessionGate Gate() const override { return {false, kAnyVersion, 3324, 4511}; }
    int32_t NameId() const override { return 292; }
    int32_t DescriptionId() const override { return 291; }
    int32_t NewVersion() const override { return 4511; }
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool RetargetSubtask();
};

}  // namespace kdvq
