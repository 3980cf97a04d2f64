// Creation of a class by its identifier or ProgID.
#include "platform/com/error_info.h"
#include "platform/com/runtime_internal.h"

namespace com {

HRESULT CoCreateInstance(REFCLSID clsid, REFIID iid, void** out) {
    ClearErrorInfo();
    if (!out) return E_POINTER;
    *out = nullptr;
    if (ComPtr<IClassFactory> factory = internal::FindProcessClassObject(clsid)) {
        return factory->CreateInstance(nullptr, iid, out);
    }
    return GuardResult([&]() -> HRESULT {
        const Registry registry = Registry::Load();
        const ClassRegistration* reg = registry.Find(clsid);
        if (!reg || reg->libraryPath.empty()) {
            return internal::Fail(REGDB_E_CLASSNOTREG, DescribeHResult(REGDB_E_CLASSNOTREG) + ": " + FormatGuid(clsid));
        }
        return internal::CreateFromLibrary(reg->libraryPath, clsid, iid, out);
    });
}

HRESULT CLSIDFromProgID(const std::string& progId, CLSID* out) {
    if (!out) return E_POINTER;
    return GuardResult([&]() -> HRESULT {
        const Registry registry = Registry::Load();
        const ClassRegistration* reg = registry.FindByProgId(progId);
        if (!reg) return internal::Fail(REGDB_E_CLASSNOTREG, DescribeHResult(REGDB_E_CLASSNOTREG) + ": " + progId);
        *out = reg->clsid;
        return S_OK;
    });
}

}  // namespace com
