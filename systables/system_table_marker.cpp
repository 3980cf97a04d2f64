#include "systables/system_table_marker.h"

#include "framework/object_variable.h"
#include "platform/automation/collection.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdvq {

bool HostProbeComponentInstalled() {
    try {
        com::HRESULT hr = com::S_OK;
        auto probe = com::CreateInstance<IKDProbe>(CLSID_KDProbe, IID_IKDProbe, &hr);
        // Only the creation matters; the instance goes at once.
        return com::Succeeded(hr) && probe;
    } catch (...) {
        return false;
    }
}

SystemTableMarker::SystemTableMarker(std::string className, std::string tagName, int32_t nameId,
                                     int32_t descriptionId, std::string extension, std::vector<std::string> tables)
    : UpgraderBase(std::move(className), std::move(tagName)),
      nameId_(nameId),
      descriptionId_(descriptionId),
      extension_(std::move(extension)),
      tables_(std::move(tables)) {}

// The version is not looked at: the marking is repeatable by design.
bool SystemTableMarker::OnEnabled(IKDLogin* login, int32_t& /*version*/) {
    if (!HostProbeComponentInstalled()) return false;
    return extension_.empty() || ExtensionSupported(login);
}

bool SystemTableMarker::ExtensionSupported(IKDLogin* login) const {
    IKDLogin& source = Deref(login);
    ConnectionPtr connection = LoginConnection(source);
    std::string prefix;
    com::Check(source.GetTablePrefix(&prefix));
    return VerifySupportedExtension(connection.Get(), prefix, extension_);
}

Variant SystemTableMarker::OnTavixSystemTables() {
    auto list = automation::Collection::Create();
    for (const auto& table : tables_) list->Add(Variant(table));
    return Variant(com::ComPtr<com::IUnknown>(list));
}

}  // namespace kdvq
