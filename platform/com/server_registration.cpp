// Self-registration: load a library and call its registration entry point.
#include <dlfcn.h>

#include "platform/com/error_info.h"
#include "platform/com/runtime_internal.h"

namespace com {

namespace {

HRESULT CallEntryPoint(const std::string& libraryPath, const char* entryPoint) {
    ClearErrorInfo();
    void* handle = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) return internal::FailLoading(libraryPath);
    using EntryPoint = HRESULT (*)();
    auto entry = reinterpret_cast<EntryPoint>(dlsym(handle, entryPoint));
    const HRESULT hr = entry ? entry() : internal::FailEntryPoint(entryPoint, libraryPath);
    dlclose(handle);
    return hr;
}

}  // namespace

HRESULT RegisterServer(const std::string& libraryPath) { return CallEntryPoint(libraryPath, "DllRegisterServer"); }

HRESULT UnregisterServer(const std::string& libraryPath) { return CallEntryPoint(libraryPath, "DllUnregisterServer"); }

}  // namespace com
