#pragma once
// Pieces of the component runtime shared between its source files.
#include <string>

#include "platform/com/runtime.h"

namespace com::internal {

// The source named in the error info the runtime itself sets.
inline const char* const kRuntimeSource = "kdplatform";

// Stores error info (number, the runtime as source, description) and
// returns the failed result that goes with it.
HRESULT Fail(int32_t number, const std::string& description);
// The failures of loading a library (with the loader's reason, taken from
// dlerror) and of a library that lacks an entry point.
HRESULT FailLoading(const std::string& libraryPath);
HRESULT FailEntryPoint(const char* entryPoint, const std::string& libraryPath);

// The class object the process registered for clsid, or null.
ComPtr<IClassFactory> FindProcessClassObject(REFCLSID clsid);

// Creates clsid from the library at path: loads it (once), runs its thread
// start-up on this thread when not done yet, and asks its class factory.
HRESULT CreateFromLibrary(const std::string& path, REFCLSID clsid, REFIID iid, void** out);

}  // namespace com::internal
