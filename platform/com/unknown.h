#pragma once
// Reference-counted interfaces in the component model's slot order:
// QueryInterface, AddRef and Release come first in every vtable, the
// interface's own operations after them.
#include <atomic>
#include <cstdint>
#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

#include "platform/com/guid.h"

namespace com {

using HRESULT = int32_t;
using ULONG = uint32_t;

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110u);
constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111u);
constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154u);
constexpr HRESULT SELFREG_E_CLASS = static_cast<HRESULT>(0x80040201u);

inline bool Succeeded(HRESULT hr) { return hr >= 0; }
inline bool Failed(HRESULT hr) { return hr < 0; }

// The result a Basic-style component returns for its error number n:
// FACILITY_CONTROL (0x800A0000 | n) for small numbers, n itself when n is
// already a failure code.
HRESULT HResultFromBasicError(int32_t number);
// The inverse: the Err.Number a caller sees for a failed call.
int32_t BasicErrorFromHResult(HRESULT hr);

extern const IID IID_IUnknown;
extern const IID IID_IClassFactory;

struct IUnknown {
    virtual HRESULT QueryInterface(REFIID iid, void** out) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

protected:
    virtual ~IUnknown() = default;
};

struct IClassFactory : IUnknown {
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** out) = 0;
    virtual HRESULT LockServer(bool lock) = 0;
};

template <class I>
struct InterfaceId;  // specialise: static const IID& Get();
template <>
struct InterfaceId<IClassFactory> {
    static const IID& Get() { return IID_IClassFactory; }
};

// Intrusive smart pointer over AddRef/Release.
template <class T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}
    // Takes a new reference.
    ComPtr(T* p) : p_(p) { if (p_) p_->AddRef(); }
    ComPtr(const ComPtr& o) : p_(o.p_) { if (p_) p_->AddRef(); }
    ComPtr(ComPtr&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    template <class U>
    ComPtr(const ComPtr<U>& o) : p_(o.Get()) { if (p_) p_->AddRef(); }
    ~ComPtr() { Reset(); }
    ComPtr& operator=(ComPtr o) noexcept { std::swap(p_, o.p_); return *this; }

    // Adopts a reference the caller already owns (for out-parameters).
    static ComPtr Attach(T* p) { ComPtr r; r.p_ = p; return r; }
    T* Detach() { return std::exchange(p_, nullptr); }
    void Reset() { if (p_) { std::exchange(p_, nullptr)->Release(); } }
    T* Get() const { return p_; }
    T* operator->() const { return p_; }
    T& operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }
    // Address for an out-parameter; releases what is held first.
    T** Put() { Reset(); return &p_; }
    void** PutVoid() { Reset(); return reinterpret_cast<void**>(&p_); }

    // QueryInterface for the interface U whose identifier is iid.
    template <class U>
    ComPtr<U> As(REFIID iid) const {
        ComPtr<U> r;
        if (p_) p_->QueryInterface(iid, r.PutVoid());
        return r;
    }

    bool operator==(const ComPtr& o) const { return p_ == o.p_; }
    bool operator!=(const ComPtr& o) const { return p_ != o.p_; }

private:
    T* p_ = nullptr;
};

// Code compiled into one module (a shared library or the executable) and
// never shared with or interposed by another module, so that each module
// counts its own objects.
#define KDVQ_MODULE_LOCAL __attribute__((visibility("hidden")))

namespace detail {
// The counter of the module whose code calls this: the function is hidden,
// so every module has its own copy and its own static.
KDVQ_MODULE_LOCAL inline std::atomic<long>& ThisModuleCount() {
    static std::atomic<long> count{0};
    return count;
}
}  // namespace detail

// Counts objects alive and server locks in a module so that DllCanUnloadNow
// can answer. The count is the calling module's own.
class ModuleLock {
public:
    KDVQ_MODULE_LOCAL static void Increment() { ++detail::ThisModuleCount(); }
    KDVQ_MODULE_LOCAL static void Decrement() { --detail::ThisModuleCount(); }
    KDVQ_MODULE_LOCAL static long Count() { return detail::ThisModuleCount().load(); }
};

// Base for an object implementing IUnknown for a list of interfaces.
// An object counts against the module whose code constructed it, and
// uncounts from the same counter whichever module's code destroys it.
class ComObjectBase {
public:
    KDVQ_MODULE_LOCAL ComObjectBase() : ComObjectBase(detail::ThisModuleCount()) {}
    virtual ~ComObjectBase() { --*moduleCount_; }
    ComObjectBase(const ComObjectBase&) = delete;
    ComObjectBase& operator=(const ComObjectBase&) = delete;

protected:
    // For objects made on behalf of another module (a class factory made by
    // the runtime for a library counts against that library).
    explicit ComObjectBase(std::atomic<long>& moduleCount) : moduleCount_(&moduleCount) { ++moduleCount; }
    std::atomic<long>& ModuleCount() const { return *moduleCount_; }


    ULONG InternalAddRef() { return ++refs_; }
    ULONG InternalRelease() {
        ULONG r = --refs_;
        if (r == 0) delete this;
        return r;
    }

private:
    std::atomic<long>* moduleCount_;
    std::atomic<ULONG> refs_{0};
};

// Implements the three IUnknown slots for a class deriving from one or more
// interfaces. Usage:
//   class Foo : public com::Object<Foo, IFoo, IBar> { ... };
//   and define static const IID& Foo::IidOf<IFoo>() style mapping via
//   com::InterfaceId<IFoo>::value.
template <class I>
struct InterfaceId;  // specialise: static const IID& Get();

template <class Derived, class... Interfaces>
class Object : public ComObjectBase, public Interfaces... {
public:
    HRESULT QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (iid == IID_IUnknown) {
            *out = static_cast<IUnknown*>(static_cast<First*>(this));
        } else {
            (TryOne<Interfaces>(iid, out) || ...);
        }
        if (!*out) return static_cast<Derived*>(this)->QueryExtra(iid, out);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return InternalAddRef(); }
    ULONG Release() override { return InternalRelease(); }

    // Creates an instance holding one reference.
    template <class... Args>
    static ComPtr<Derived> Create(Args&&... args) {
        return ComPtr<Derived>(new Derived(std::forward<Args>(args)...));
    }

    // Derived classes may answer further identifiers (with AddRef done by them).
    HRESULT QueryExtra(REFIID, void**) { return E_NOINTERFACE; }

    IUnknown* Unknown() { return static_cast<IUnknown*>(static_cast<First*>(this)); }

private:
    using First = std::tuple_element_t<0, std::tuple<Interfaces...>>;
    template <class I>
    bool TryOne(REFIID iid, void** out) {
        if (iid == InterfaceId<I>::Get()) {
            *out = static_cast<I*>(this);
            return true;
        }
        return false;
    }
};

}  // namespace com
