#pragma once
// Base of the host's objects: reference counting and QueryInterface for one
// interface whose identifier the derived class names (the host's own copy
// of it, see host_identifiers.h).
#include <utility>

#include "platform/com/runtime.h"
#include "platform/com/unknown.h"

namespace kdhost {

template <class Derived, class Interface>
class HostObject : public com::ComObjectBase, public Interface {
public:
    com::HRESULT QueryInterface(com::REFIID iid, void** out) override {
        if (!out) return com::E_POINTER;
        if (iid == com::IID_IUnknown || iid == Derived::InterfaceIid()) {
            *out = static_cast<Interface*>(this);
            AddRef();
            return com::S_OK;
        }
        *out = nullptr;
        return com::E_NOINTERFACE;
    }
    com::ULONG AddRef() override { return InternalAddRef(); }
    com::ULONG Release() override { return InternalRelease(); }

    template <class... Args>
    static com::ComPtr<Derived> Create(Args&&... args) {
        return com::ComPtr<Derived>(new Derived(std::forward<Args>(args)...));
    }
};

// A class factory that makes a new Derived(args...) for every request.
template <class Derived, class... Args>
com::ComPtr<com::IClassFactory> FactoryOf(Args... args) {
    return com::MakeClassFactory([=](com::REFIID iid, void** out) {
        return Derived::Create(args...)->QueryInterface(iid, out);
    });
}

}  // namespace kdhost
