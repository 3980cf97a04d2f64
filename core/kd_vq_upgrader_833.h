#pragma once
// Release 8.3.3 of the core tables: every supported extension gets a
// numeric identifier (renumbered from 101 on every run) and every node type
// the identifier of the extension that owns it.
#include <cstdint>
#include <string>

#include "core/core_upgrader.h"
#include "platform/automation/dictionary.h"

namespace kdvq {

class KDVqUpgrader833 : public CoreUpgrader {
public:
    KDVqUpgrader833();

    // What GetExtensionId answers for a node type that no known extension
    // owns: the undetermined identifier, which no extension is given.
    static constexpr int32_t kNoExtension = -1;

protected:
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(const char* addExtensionsId, const char* addNodeTypeExtensionId);
    bool UpdateSupportedExtensionsId();
    bool UpdateNodeTypesExtensionId();
    int32_t GetExtensionId(const std::string& nodeTypeName, const RecordsetPtr& extensions);

    // Node type name -> extension name, built on first use.
    com::ComPtr<automation::Dictionary> nodeTypeExtensions_;
};

}  // namespace kdvq
