// Class objects registered by the process itself, and factories made from
// plain creation functions.
#include <mutex>
#include <vector>

#include "platform/com/error_info.h"
#include "platform/com/runtime_internal.h"

namespace com {

namespace {

struct ProcessClassObject {
    unsigned long cookie;
    CLSID clsid;
    ComPtr<IClassFactory> factory;
};

struct ProcessClassTable {
    std::mutex mutex;
    std::vector<ProcessClassObject> entries;
    unsigned long nextCookie = 1;
};

ProcessClassTable& Table() {
    static ProcessClassTable table;
    return table;
}

class FunctionFactory : public ComObjectBase, public IClassFactory {
public:
    FunctionFactory(CreateFunction create, std::atomic<long>& moduleCount)
        : ComObjectBase(moduleCount), create_(std::move(create)) {}

    HRESULT QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
        *out = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return InternalAddRef(); }
    ULONG Release() override { return InternalRelease(); }

    HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        *out = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return GuardResult([&] { return create_(iid, out); });
    }

    // A server lock keeps the module loaded like a live object does.
    HRESULT LockServer(bool lock) override {
        if (lock) {
            ++ModuleCount();
        } else {
            --ModuleCount();
        }
        return S_OK;
    }

private:
    CreateFunction create_;
};

}  // namespace

unsigned long RegisterClassObject(REFCLSID clsid, IClassFactory* factory) {
    if (!factory) return 0;
    ProcessClassTable& table = Table();
    std::lock_guard<std::mutex> lock(table.mutex);
    const unsigned long cookie = table.nextCookie++;
    table.entries.push_back({cookie, clsid, ComPtr<IClassFactory>(factory)});
    return cookie;
}

void RevokeClassObject(unsigned long cookie) {
    ComPtr<IClassFactory> released;  // released after the lock is left
    ProcessClassTable& table = Table();
    std::lock_guard<std::mutex> lock(table.mutex);
    for (auto it = table.entries.begin(); it != table.entries.end(); ++it) {
        if (it->cookie == cookie) {
            released = std::move(it->factory);
            table.entries.erase(it);
            break;
        }
    }
}

ComPtr<IClassFactory> MakeClassFactoryFor(CreateFunction create, std::atomic<long>& moduleCount) {
    return ComPtr<IClassFactory>(new FunctionFactory(std::move(create), moduleCount));
}

namespace internal {

// The latest registration of a class wins, so a nested registration (a test
// replacing a host object) takes effect until it is revoked.
ComPtr<IClassFactory> FindProcessClassObject(REFCLSID clsid) {
    ProcessClassTable& table = Table();
    std::lock_guard<std::mutex> lock(table.mutex);
    for (auto it = table.entries.rbegin(); it != table.entries.rend(); ++it) {
        if (it->clsid == clsid) return it->factory;
    }
    return nullptr;
}

}  // namespace internal

}  // namespace com
