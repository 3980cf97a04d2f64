#pragma once
// Session extension, release 8.3.0: the session version table, the move of
// the old session version records into the core versions table and, on
// Oracle only, the backup and drop of the old table.
#include "session/session_upgrader.h"

namespace kdvq {

class KDUpgradeSM830 : public SessionUpgrader {
public:
    KDUpgradeSM830() : SessionUpgrader("KDUpgradeSM830", "KDUpgradeSM830") {}

protected:
    SessionGate Gate() const override { return {false, 1206, kAnyVersion, 1206}; }
    int32_t NameId() const override { return 242; }
    int32_t DescriptionId() const override { return 241; }
    int32_t NewVersion() const override { return 1206; }
    bool OnExecute() override;
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    // Creates and seeds KD_SESSION_DB_VERSION when it is missing.
    bool CreateVersionTable(const std::string& createSql);
    // Copies the old version records into KD_VQ_VERSIONS when both tables
    // exist; false only when the copy itself failed.
    bool CopyVersionRecords(const std::string& insertHead);

    int32_t sessionNodeTypeId_ = 0;
};

}  // namespace kdvq
