#pragma once
// The host's category service: the upgrader category's identifier for its
// code; other codes are unknown to this host.
#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"

namespace kdhost {

class CategoryService : public HostObject<CategoryService, kdvq::IKDCategoryService> {
public:
    static const com::IID& InterfaceIid() { return kIidCategoryService; }
    com::HRESULT GetCategory(int32_t code, std::string* categoryId) override;
};

// The category the upgraders register under.
com::GUID UpgraderCategory();

}  // namespace kdhost
