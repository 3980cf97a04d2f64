// A tiny component library for the runtime's tests: one class, the library
// entry points, and a per-thread start-up that counts its calls.
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"
#include "tests/platform/module/fixture.h"

namespace {

thread_local int32_t startupsOnThisThread = 0;

class Widget : public com::Object<Widget, fixture::IWidget> {
public:
    int32_t StartupsOnThisThread() override { return startupsOnThisThread; }
    com::HRESULT Refuse() override {
        return com::Guard([] { throw automation::BasicError(5, "kdvqFixture", "widget refused"); });
    }
};

std::string ThisLibrary() {
    static const int anchor = 0;
    return com::ModulePathOf(&anchor);
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) void DllThreadStartup() { ++startupsOnThisThread; }

__attribute__((visibility("default"))) com::HRESULT DllGetClassObject(const com::GUID& clsid, const com::GUID& iid,
                                                                       void** out) {
    if (!out) return com::E_POINTER;
    *out = nullptr;
    if (clsid != fixture::CLSID_Widget) return com::CLASS_E_CLASSNOTAVAILABLE;
    auto factory = com::MakeClassFactory([](com::REFIID wanted, void** object) {
        return Widget::Create()->QueryInterface(wanted, object);
    });
    return factory->QueryInterface(iid, out);
}

__attribute__((visibility("default"))) com::HRESULT DllCanUnloadNow() {
    return com::ModuleLock::Count() == 0 ? com::S_OK : com::S_FALSE;
}

__attribute__((visibility("default"))) com::HRESULT DllRegisterServer() {
    return com::Guard([] {
        com::Registry registry = com::Registry::Load();
        registry.RegisterClass({fixture::CLSID_Widget, "kdvqFixture.Widget", "Widget", ThisLibrary(), {}});
        registry.Save();
    });
}

__attribute__((visibility("default"))) com::HRESULT DllUnregisterServer() {
    return com::Guard([] {
        com::Registry registry = com::Registry::Load();
        registry.UnregisterClass(fixture::CLSID_Widget);
        registry.Save();
    });
}

}  // extern "C"
