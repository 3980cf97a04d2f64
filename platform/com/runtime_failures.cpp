// The error info the component runtime sets for its own failures.
#include <dlfcn.h>

#include "platform/com/error_info.h"
#include "platform/com/runtime_internal.h"

namespace com::internal {

HRESULT Fail(int32_t number, const std::string& description) {
    return SetErrorInfo({number, kRuntimeSource, description});
}

HRESULT FailLoading(const std::string& libraryPath) {
    const char* reason = dlerror();
    return Fail(automation::kErrDllLoad,
                automation::StandardDescription(automation::kErrDllLoad) + ": " + (reason ? reason : libraryPath));
}

HRESULT FailEntryPoint(const char* entryPoint, const std::string& libraryPath) {
    return Fail(automation::kErrDllEntryPoint, automation::StandardDescription(automation::kErrDllEntryPoint) + ": " +
                                                   entryPoint + " in " + libraryPath);
}

}  // namespace com::internal
