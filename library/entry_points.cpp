// The library's exported entry points: class objects, self-registration,
// unloading and per-thread start-up.
#include "library/entry_points.h"

#include "framework/library_objects.h"
#include "framework/mod_kd_startup.h"
#include "framework/upgrader_interfaces.h"
#include "library/class_factory.h"
#include "library/class_table.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace {

using kdvq::UpgraderClass;

const UpgraderClass* FindClass(const com::GUID& clsid) {
    for (const UpgraderClass& c : kdvq::UpgraderClasses()) {
        if (com::MakeGuid(c.clsid) == clsid) return &c;
    }
    return nullptr;
}

// The identifier of the upgrader category, as the host's category service
// gives it (the host decides which category code 122 stands for).
com::GUID UpgraderCategory() {
    com::HRESULT hr = com::S_OK;
    com::ComPtr<kdvq::IKDCategoryService> service =
        com::CreateInstance<kdvq::IKDCategoryService>(kdvq::CLSID_KDCategoryService, kdvq::IID_IKDCategoryService, &hr);
    com::Check(hr);
    std::string category;
    com::Check(service->GetCategory(kdvq::kUpgraderCategoryCode, &category));
    return com::MakeGuid(category.c_str());
}

// An address that is certainly inside this library (a function's address
// may resolve to a stub in the program that calls it).
const char kInsideThisLibrary = 0;

std::string ThisLibraryPath() { return com::ModulePathOf(&kInsideThisLibrary); }

// Registration failures become SELFREG_E_CLASS with the reason kept as the
// thread's error information.
template <class F>
com::HRESULT Registration(F&& body) {
    com::HRESULT hr = com::Guard(body);
    return com::Failed(hr) ? com::SELFREG_E_CLASS : com::S_OK;
}

}  // namespace

extern "C" com::HRESULT DllGetClassObject(const com::GUID& clsid, const com::GUID& iid, void** out) {
    if (!out) return com::E_POINTER;
    *out = nullptr;
    const UpgraderClass* upgraderClass = FindClass(clsid);
    if (!upgraderClass) return com::CLASS_E_CLASSNOTAVAILABLE;
    return kdvq::NewUpgraderClassFactory(*upgraderClass)->QueryInterface(iid, out);
}

extern "C" com::HRESULT DllRegisterServer() {
    return Registration([] {
        const com::GUID category = UpgraderCategory();
        const std::string path = ThisLibraryPath();
        com::Registry registry = com::Registry::Load();
        for (const UpgraderClass& c : kdvq::UpgraderClasses()) {
            registry.RegisterClass({com::MakeGuid(c.clsid), kdvq::ProgIdOf(c), c.name, path, {category}});
        }
        registry.RegisterInterface(kdvq::IID_IKDVqDatabaseUpgrader, "IKDVqDatabaseUpgrader", path);
        registry.RegisterInterface(kdvq::IID_IKDRegInCat, "IKDRegInCat", path);
        registry.Save();
    });
}

extern "C" com::HRESULT DllUnregisterServer() {
    return Registration([] {
        com::Registry registry = com::Registry::Load();
        for (const UpgraderClass& c : kdvq::UpgraderClasses()) registry.UnregisterClass(com::MakeGuid(c.clsid));
        registry.UnregisterInterface(kdvq::IID_IKDVqDatabaseUpgrader);
        registry.UnregisterInterface(kdvq::IID_IKDRegInCat);
        registry.Save();
    });
}

extern "C" com::HRESULT DllCanUnloadNow() {
    return kdvq::LiveUpgraderObjects() == 0 && kdvq::LibraryLocks() == 0 ? com::S_OK : com::S_FALSE;
}

extern "C" void DllThreadStartup() {
    // Globals are created once per thread and never replaced.
    if (!kdvq::ThreadGlobals().Empty()) return;
    try {
        kdvq::kdMain();
    } catch (...) {
        // Start-up already reported what it could; the runtime has no
        // caller to hand the failure to, and every later report of this
        // thread fails for want of a logger.
    }
}
