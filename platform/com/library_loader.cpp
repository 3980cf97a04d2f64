// Libraries that serve registered classes: loaded on first use, kept while
// they have objects alive, started once per thread, unloaded on request.
#include <dlfcn.h>

#include <map>
#include <memory>
#include <mutex>
#include <unordered_set>

#include "platform/com/error_info.h"
#include "platform/com/runtime_internal.h"

namespace com {

namespace {

using GetClassObjectFunction = HRESULT (*)(const GUID& clsid, const GUID& iid, void** out);
using CanUnloadNowFunction = HRESULT (*)();
using ThreadStartupFunction = void (*)();

struct LoadedLibrary {
    std::string path;
    void* handle = nullptr;
    // Identifies one stay in memory: a library that was really unloaded and
    // loaded again has fresh per-thread state and must be started again.
    uint64_t generation = 0;
    GetClassObjectFunction getClassObject = nullptr;
    CanUnloadNowFunction canUnloadNow = nullptr;
    ThreadStartupFunction threadStartup = nullptr;
};

class LibraryTable {
public:
    // The loaded library at path, loading it when needed. On failure returns
    // null with error info stored and *hr set.
    std::shared_ptr<LoadedLibrary> Acquire(const std::string& path, HRESULT* hr) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            auto found = libraries_.find(path);
            if (found != libraries_.end()) return found->second;
        }
        // Loading runs the library's static initialisers, which may use the
        // runtime themselves: it happens outside the lock.
        void* resident = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
        void* handle = resident ? resident : dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle) {
            *hr = internal::FailLoading(path);
            return nullptr;
        }
        auto library = std::make_shared<LoadedLibrary>();
        library->path = path;
        library->handle = handle;
        library->getClassObject = reinterpret_cast<GetClassObjectFunction>(dlsym(handle, "DllGetClassObject"));
        library->canUnloadNow = reinterpret_cast<CanUnloadNowFunction>(dlsym(handle, "DllCanUnloadNow"));
        library->threadStartup = reinterpret_cast<ThreadStartupFunction>(dlsym(handle, "DllThreadStartup"));
        if (!library->getClassObject) {
            dlclose(handle);
            *hr = internal::FailEntryPoint("DllGetClassObject", path);
            return nullptr;
        }

        std::lock_guard<std::mutex> lock(mutex_);
        auto found = libraries_.find(path);
        if (found != libraries_.end()) {  // another thread loaded it meanwhile
            dlclose(handle);
            return found->second;
        }
        auto stayed = stillMapped_.find(path);
        library->generation = resident && stayed != stillMapped_.end() ? stayed->second : nextGeneration_++;
        stillMapped_.erase(path);
        libraries_.emplace(path, library);
        return library;
    }

    void FreeUnused() {
        std::lock_guard<std::mutex> lock(mutex_);
        for (auto it = libraries_.begin(); it != libraries_.end();) {
            LoadedLibrary& library = *it->second;
            // A library in use by a creation under way on another thread, or
            // without DllCanUnloadNow, stays.
            const bool unused = it->second.use_count() == 1 && library.canUnloadNow && library.canUnloadNow() == S_OK;
            if (!unused) {
                ++it;
                continue;
            }
            dlclose(library.handle);
            // The system may keep the library mapped (linked by the program,
            // held by someone else, or pinned by per-thread destructors); its
            // per-thread state then survives, and so does its generation.
            if (void* still = dlopen(library.path.c_str(), RTLD_NOW | RTLD_NOLOAD)) {
                stillMapped_[library.path] = library.generation;
                dlclose(still);
            }
            it = libraries_.erase(it);
        }
    }

private:
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<LoadedLibrary>> libraries_;
    std::map<std::string, uint64_t> stillMapped_;
    uint64_t nextGeneration_ = 1;
};

LibraryTable& Libraries() {
    static LibraryTable* table = new LibraryTable;  // never destroyed: libraries stay loaded until exit
    return *table;
}

// Runs the library's thread start-up the first time this thread uses it.
void StartOnThisThread(const LoadedLibrary& library) {
    thread_local std::unordered_set<uint64_t> started;
    if (!library.threadStartup) return;
    // Marked before the call so that a start-up creating objects of its own
    // library does not start it again.
    if (started.insert(library.generation).second) library.threadStartup();
}

}  // namespace

void CoFreeUnusedLibraries() { Libraries().FreeUnused(); }

namespace internal {

HRESULT CreateFromLibrary(const std::string& path, REFCLSID clsid, REFIID iid, void** out) {
    HRESULT hr = S_OK;
    std::shared_ptr<LoadedLibrary> library = Libraries().Acquire(path, &hr);
    if (!library) return hr;
    StartOnThisThread(*library);
    ComPtr<IClassFactory> factory;
    hr = library->getClassObject(clsid, IID_IClassFactory, factory.PutVoid());
    if (Failed(hr)) return hr;
    if (!factory) return E_POINTER;
    return factory->CreateInstance(nullptr, iid, out);
}

}  // namespace internal

}  // namespace com
