#include "library/class_factory.h"

#include "framework/library_objects.h"
#include "platform/com/error_info.h"

namespace kdvq {

namespace {

class UpgraderClassFactory : public com::ComObjectBase, public com::IClassFactory {
public:
    explicit UpgraderClassFactory(const UpgraderClass& upgraderClass) : class_(upgraderClass) {}

    com::HRESULT QueryInterface(com::REFIID iid, void** out) override {
        if (!out) return com::E_POINTER;
        *out = nullptr;
        if (iid != com::IID_IUnknown && iid != com::IID_IClassFactory) return com::E_NOINTERFACE;
        *out = static_cast<com::IClassFactory*>(this);
        AddRef();
        return com::S_OK;
    }
    com::ULONG AddRef() override { return InternalAddRef(); }
    com::ULONG Release() override { return InternalRelease(); }

    com::HRESULT CreateInstance(com::IUnknown* outer, com::REFIID iid, void** out) override {
        if (!out) return com::E_POINTER;
        *out = nullptr;
        if (outer) return com::CLASS_E_NOAGGREGATION;
        com::ComPtr<UpgraderBase> object;
        com::HRESULT hr = com::Guard([&] { object = class_.create(); });
        if (com::Failed(hr)) return hr;
        return object->QueryInterface(iid, out);
    }

    com::HRESULT LockServer(bool lock) override {
        LockLibrary(lock);
        return com::S_OK;
    }

private:
    const UpgraderClass& class_;
};

}  // namespace

com::ComPtr<com::IClassFactory> NewUpgraderClassFactory(const UpgraderClass& upgraderClass) {
    return com::ComPtr<com::IClassFactory>(new UpgraderClassFactory(upgraderClass));
}

}  // namespace kdvq
