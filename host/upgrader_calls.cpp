#include "host/upgrader_calls.h"

#include "host/host_identifiers.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdhost {

std::string DescribeFailure(com::HRESULT hr) {
    com::ErrorInfo info = com::TakeErrorInfo();
    if (!info.description.empty()) return info.description;
    return com::DescribeHResult(hr);
}

UpgraderPtr NewUpgrader(const com::CLSID& clsid, std::string* error) {
    com::HRESULT hr = com::S_OK;
    UpgraderPtr upgrader = com::CreateInstance<kdvq::IKDVqDatabaseUpgrader>(clsid, kIidDatabaseUpgrader, &hr);
    if (!upgrader) *error = DescribeFailure(com::Failed(hr) ? hr : com::E_NOINTERFACE);
    return upgrader;
}

bool AskEnabled(kdvq::IKDVqDatabaseUpgrader* upgrader, kdvq::IKDLogin* login, int32_t version, bool* enabled,
                std::string* error) {
    automation::VARIANT_BOOL answer = automation::VARIANT_FALSE;
    com::HRESULT hr = upgrader->Enabled(login, &version, &answer);
    if (com::Failed(hr)) {
        *error = DescribeFailure(hr);
        return false;
    }
    *enabled = answer != automation::VARIANT_FALSE;
    return true;
}

std::string NameOf(kdvq::IKDVqDatabaseUpgrader* upgrader, const std::string& fallback) {
    std::string name;
    if (com::Failed(upgrader->Name(&name))) {
        com::TakeErrorInfo();
        return fallback;
    }
    return name;
}

}  // namespace kdhost
