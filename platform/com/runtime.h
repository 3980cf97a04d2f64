#pragma once
// The component runtime: class objects registered by the hosting process,
// a registry of classes kept in a file, component categories, and creation
// of a class by its identifier (loading the implementing library on demand).
#include <atomic>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/com/guid.h"
#include "platform/com/unknown.h"

namespace com {

// ---- class objects registered by the process itself -----------------------
// Registers a class factory for clsid in this process; it is found before
// any library in the registry. Returns a cookie for RevokeClassObject.
unsigned long RegisterClassObject(REFCLSID clsid, IClassFactory* factory);
void RevokeClassObject(unsigned long cookie);

// A factory that makes objects with a plain function (the common case).
// An exception from create becomes a failed result with error info set.
using CreateFunction = std::function<HRESULT(REFIID iid, void** out)>;
// The factory and its server locks count against the module given.
ComPtr<IClassFactory> MakeClassFactoryFor(CreateFunction create, std::atomic<long>& moduleCount);
// The factory counts against the calling module.
KDVQ_MODULE_LOCAL inline ComPtr<IClassFactory> MakeClassFactory(CreateFunction create) {
    return MakeClassFactoryFor(std::move(create), detail::ThisModuleCount());
}

// ---- creation ---------------------------------------------------------------
// Creates clsid, asking for iid: first from the process's own class objects,
// then from the registry by loading the library that serves it. Before the
// first object of a library is created on a thread, the library's exported
// start-up routine DllThreadStartup (when present) runs on that thread.
HRESULT CoCreateInstance(REFCLSID clsid, REFIID iid, void** out);
// Resolves a ProgID ("kdVqUpgraders.KDVqUpgrader830") through the registry.
HRESULT CLSIDFromProgID(const std::string& progId, CLSID* out);

template <class T>
ComPtr<T> CreateInstance(REFCLSID clsid, REFIID iid, HRESULT* hrOut = nullptr) {
    ComPtr<T> r;
    HRESULT hr = CoCreateInstance(clsid, iid, r.PutVoid());
    if (hrOut) *hrOut = hr;
    return r;
}

// Releases libraries whose DllCanUnloadNow answers S_OK.
void CoFreeUnusedLibraries();
// The file name (without directory and extension) of the library that
// contains the given address, e.g. "libkdVqUpgraders" -> "kdVqUpgraders".
std::string ModuleNameOf(const void* address);
// Full path of the library that contains the given address.
std::string ModulePathOf(const void* address);

// ---- registry ---------------------------------------------------------------
struct ClassRegistration {
    CLSID clsid;
    std::string progId;
    std::string name;          // class name
    std::string libraryPath;   // absolute path of the serving library
    std::vector<GUID> implementedCategories;
};

// The registry file: $KDVQ_REGISTRY when set, otherwise
// $XDG_CONFIG_HOME/kdvq/registry.ini (or ~/.config/kdvq/registry.ini).
std::string RegistryPath();

class Registry {
public:
    // Reads the registry file (a missing file is an empty registry). An
    // unreadable or malformed file raises a BasicError naming the file and
    // the offending line.
    static Registry Load();
    // Writes it back atomically (a temporary file renamed over the old one),
    // creating its directory when needed; raises a BasicError on failure.
    void Save() const;

    // Adds or replaces a class; a class keeps its position when replaced so
    // that enumeration stays in registration order.
    void RegisterClass(const ClassRegistration& reg);
    void UnregisterClass(REFCLSID clsid);
    // Interface description of a library (its type library's role).
    void RegisterInterface(REFIID iid, const std::string& name, const std::string& libraryPath);
    void UnregisterInterface(REFIID iid);

    const ClassRegistration* Find(REFCLSID clsid) const;
    // ProgIDs compare without regard to case.
    const ClassRegistration* FindByProgId(const std::string& progId) const;
    // Classes that implement the category, in registration order.
    std::vector<ClassRegistration> ClassesOfCategory(const GUID& category) const;
    const std::vector<ClassRegistration>& Classes() const { return classes_; }

    struct InterfaceRegistration {
        IID iid;
        std::string name;
        std::string libraryPath;
    };
    const InterfaceRegistration* FindInterface(REFIID iid) const;
    const std::vector<InterfaceRegistration>& Interfaces() const { return interfaces_; }

private:
    std::vector<ClassRegistration> classes_;
    std::vector<InterfaceRegistration> interfaces_;
};

// Loads a library and calls its DllRegisterServer / DllUnregisterServer.
HRESULT RegisterServer(const std::string& libraryPath);
HRESULT UnregisterServer(const std::string& libraryPath);

}  // namespace com
