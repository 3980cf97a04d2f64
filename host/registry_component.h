#pragma once
// The host's registry component: the upgraders read machine settings
// through it (open a key, read a value). This host keeps such values in its
// settings (settings.h); a value that is not set reads as the caller's
// default, or as empty text when the caller gives none.
#include <memory>
#include <string>

#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "host/settings.h"

namespace kdhost {

class RegistryComponent : public HostObject<RegistryComponent, kdvq::IKDRegistry> {
public:
    explicit RegistryComponent(std::shared_ptr<const Settings> settings) : settings_(std::move(settings)) {}
    static const com::IID& InterfaceIid() { return kIidRegistry; }

    // Every hive and mode reads the same settings.
    com::HRESULT OpenKey(int32_t hive, int32_t mode, const std::string& keyName) override;
    com::HRESULT Operation2() override { return com::E_NOTIMPL; }
    // The value as text (variant type 8), as a number for the numeric
    // types 2 and 3, else as text.
    com::HRESULT ReadValue(const std::string& valueName, int32_t varType, const kdvq::Variant& defaultValue,
                           kdvq::Variant* value) override;

private:
    std::shared_ptr<const Settings> settings_;
    std::string key_;
};

}  // namespace kdhost
