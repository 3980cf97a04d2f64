#pragma once
// The fixture library's class and interface, and a registry file of the
// test's own, shared by the fixture library and the runtime's tests.
#include <stdlib.h>

#include <string>

#include "platform/com/unknown.h"
#include "tests/support/test_host.h"

namespace fixture {

// Plain const, not inline: inline variables are unique symbols, and a
// library defining one can never be unloaded.

// {6A18E58E-159D-4015-AFA0-3773EDB7E105}
const com::CLSID CLSID_Widget = {0x6A18E58E, 0x159D, 0x4015, {0xAF, 0xA0, 0x37, 0x73, 0xED, 0xB7, 0xE1, 0x05}};
// {2C10C58C-457D-4BA4-AFF9-7995CC6ED00C}
const com::IID IID_IWidget = {0x2C10C58C, 0x457D, 0x4BA4, {0xAF, 0xF9, 0x79, 0x95, 0xCC, 0x6E, 0xD0, 0x0C}};

struct IWidget : com::IUnknown {
    // How often the library's thread start-up ran on the calling thread
    // since the library was loaded.
    virtual int32_t StartupsOnThisThread() = 0;
    // Fails with error info number 5, source "kdvqFixture", description
    // "widget refused".
    virtual com::HRESULT Refuse() = 0;
};

// Points KDVQ_REGISTRY at a fresh file in a temporary directory for the
// object's lifetime; the previous value comes back afterwards.
class ScopedRegistryFile {
public:
    ScopedRegistryFile() : path_(dir_.File("sub/registry.ini")) {
        if (const char* old = getenv("KDVQ_REGISTRY")) previous_ = old, hadPrevious_ = true;
        setenv("KDVQ_REGISTRY", path_.c_str(), 1);
    }
    ~ScopedRegistryFile() {
        if (hadPrevious_) {
            setenv("KDVQ_REGISTRY", previous_.c_str(), 1);
        } else {
            unsetenv("KDVQ_REGISTRY");
        }
    }
    ScopedRegistryFile(const ScopedRegistryFile&) = delete;
    ScopedRegistryFile& operator=(const ScopedRegistryFile&) = delete;

    const std::string& Path() const { return path_; }
    const std::string& Dir() const { return dir_.Path(); }

private:
    kdvq::testing::TempDir dir_;
    std::string path_, previous_;
    bool hadPrevious_ = false;
};

}  // namespace fixture

template <>
struct com::InterfaceId<fixture::IWidget> {
    static const com::IID& Get() { return fixture::IID_IWidget; }
};
