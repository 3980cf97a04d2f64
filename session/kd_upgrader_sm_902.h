#pragma once
// Session extension, release 9.0.2: repeats the schema steps of 8.3.3, then
// moves the session modification log of KD_SESSION_MODS into the core
// history table and drops the old table.
#include "session/session_schema_upgrader.h"

namespace kdvq {

class KDUpgraderSM902 : public SessionSchemaUpgrader {
public:
    KDUpgraderSM902() : SessionSchemaUpgrader("KDUpgraderSM902", "KDUpgradeSM902") {}

protected:
    SessionGate Gate() const override { return {true, 2860, 1601, 2769}; }
    int32_t NameId() const override { return 276; }
    int32_t DescriptionId() const override { return 275; }
    int32_t NewVersion() const override { return 2769; }
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(bool oracle);
    bool MoveHistoryRecords(bool isOracle);
};

}  // namespace kdvq
