#include "host/host_services.h"

#include "host/category_service.h"
#include "host/logger.h"
#include "host/probe.h"
#include "host/registry_component.h"
#include "host/resource_strings.h"
#include "platform/com/runtime.h"

namespace kdhost {

HostServices::HostServices(const HostConfiguration& configuration) {
    Register(kClsidLogger, FactoryOf<Logger>(configuration.log));
    Register(kClsidResourceStrings, FactoryOf<ResourceStrings>(configuration.strings));
    Register(kClsidCategoryService, FactoryOf<CategoryService>());
    Register(kClsidInputBox, FactoryOf<HostInputBox>(configuration.answers));
    Register(kClsidRegistry, FactoryOf<RegistryComponent>(configuration.settings));
    Register(kClsidProbe, FactoryOf<Probe>());
}

HostServices::~HostServices() {
    for (unsigned long cookie : cookies_) com::RevokeClassObject(cookie);
}

void HostServices::Register(const com::CLSID& clsid, com::ComPtr<com::IClassFactory> factory) {
    cookies_.push_back(com::RegisterClassObject(clsid, factory.Get()));
    factories_.push_back(std::move(factory));
}

}  // namespace kdhost
