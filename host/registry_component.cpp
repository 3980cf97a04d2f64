#include "host/registry_component.h"

#include "platform/com/error_info.h"

namespace kdhost {

com::HRESULT RegistryComponent::OpenKey(int32_t, int32_t, const std::string& keyName) {
    key_ = keyName;
    return com::S_OK;
}

com::HRESULT RegistryComponent::ReadValue(const std::string& valueName, int32_t varType,
                                          const kdvq::Variant& defaultValue, kdvq::Variant* value) {
    return com::Guard([&] {
        std::optional<std::string> text = settings_->Get(key_, valueName);
        if (!text) {
            *value = defaultValue.IsEmpty() ? kdvq::Variant("") : defaultValue;
            return;
        }
        kdvq::Variant read(*text);
        if (varType == automation::vtInteger) {
            *value = kdvq::Variant::Integer(read.CInt());
        } else if (varType == automation::vtLong) {
            *value = kdvq::Variant::Long(read.CLng());
        } else {
            *value = read;
        }
    });
}

}  // namespace kdhost
