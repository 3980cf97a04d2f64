#pragma once
// Session extension, release 8.3.3: database, enterprise and session-type
// columns on KD_SESSION, the session-type table, and the retired mobile
// packet column. The routine stamps 1944 itself; Execute then hands 1601 to
// SetDBVersion, which only ever raises the stored number.
#include "session/session_schema_upgrader.h"

namespace kdvq {

class KDUpgraderSM833 : public SessionSchemaUpgrader {
public:
    KDUpgraderSM833() : SessionSchemaUpgrader("KDUpgraderSM833", "KDUpgradeSM833") {}

protected:
    SessionGate Gate() const override { return {true, 1926, 1206, 1601}; }
    int32_t NameId() const override { return 264; }
    int32_t DescriptionId() const override { return 263; }
    int32_t NewVersion() const override { return 1601; }
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(bool oracle);
};

}  // namespace kdvq
