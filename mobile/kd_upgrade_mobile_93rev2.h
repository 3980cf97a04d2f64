#pragma once
// Mobile extension, release 9.3 rev2: the packet adapter table with its six
// adapter rows, and a packet extension column on the mobile state, all in
// one transaction. Its reports carry the name "KDUpgradeMobile931".
#include "mobile/mobile_upgrader.h"

namespace kdvq {

class KDUpgradeMobile93rev2 : public MobileUpgrader {
public:
    KDUpgradeMobile93rev2() : MobileUpgrader("KDUpgradeMobile93rev2", "KDUpgradeMobile931") {}

protected:
    MobileGate Gate() const override { return {kAnyMobileVersion, 3035, 5129, false}; }
    int32_t NameId() const override { return 300; }
    int32_t DescriptionId() const override { return 299; }
    int32_t NewVersion() const override { return 5129; }
    bool Upgrade(bool oracle) override;

private:
    bool UpgradeInTransaction(bool oracle);
    // word goes between the table name and the column list: "COLUMNS" where
    // Oracle reads it as an alias, empty otherwise.
    bool InsertRows(const std::string& word);
    bool InsertRow(const std::string& objectId, const std::string& progId, const std::string& extensionName,
                   const std::string& sequence, const std::string& word);
};

}  // namespace kdvq
