#include "host/library_registration.h"

#include <unistd.h>

#include <filesystem>

#include "host/bad_input.h"
#include "host/category_service.h"
#include "host/resource_files.h"
#include "host/upgrader_calls.h"
#include "platform/com/runtime.h"

namespace kdhost {

namespace {

bool Readable(const std::string& path) { return !path.empty() && ::access(path.c_str(), R_OK) == 0; }

std::vector<com::ClassRegistration> RegisteredUpgraders() {
    return com::Registry::Load().ClassesOfCategory(UpgraderCategory());
}

bool Usable(const std::vector<com::ClassRegistration>& classes) {
    if (classes.empty()) return false;
    for (const com::ClassRegistration& c : classes) {
        if (!Readable(c.libraryPath)) return false;
    }
    return true;
}

}  // namespace

std::string BuiltLibraryPath() {
    // Installed, the library is in a folder of the package's own; in the
    // build tree, beside the other built libraries.
    for (const char* folder : {"/../lib/kdvq-upgraders/", "/../lib/"}) {
        std::string nextToExecutable = ExecutableFolder() + folder + "libkdVqUpgraders.so";
        if (Readable(nextToExecutable)) return std::filesystem::weakly_canonical(nextToExecutable).string();
    }
#ifdef KDVQ_BUILD_LIBRARY_PATH
    return KDVQ_BUILD_LIBRARY_PATH;
#else
    return ExecutableFolder() + "/../lib/libkdVqUpgraders.so";
#endif
}

std::vector<UpgraderClassInfo> UpgraderClasses(bool registerWhenMissing) {
    std::vector<com::ClassRegistration> classes = RegisteredUpgraders();
    if (registerWhenMissing && !Usable(classes)) {
        RegisterLibrary(BuiltLibraryPath());
        classes = RegisteredUpgraders();
    }
    if (classes.empty()) {
        throw BadInput("no upgrader classes are registered in " + com::RegistryPath() +
                       "; run \"kdvq-upgrade register\"");
    }
    std::vector<UpgraderClassInfo> infos;
    for (const com::ClassRegistration& c : classes) infos.push_back({c.name, c.clsid});
    return infos;
}

void RegisterLibrary(const std::string& libraryPath) {
    if (!Readable(libraryPath)) throw BadInput(libraryPath + ": no such library");
    com::HRESULT hr = com::RegisterServer(libraryPath);
    if (com::Failed(hr)) throw BadInput(libraryPath + ": registration failed: " + DescribeFailure(hr));
}

void UnregisterLibrary(const std::string& libraryPath) {
    if (!Readable(libraryPath)) throw BadInput(libraryPath + ": no such library");
    com::HRESULT hr = com::UnregisterServer(libraryPath);
    if (com::Failed(hr)) throw BadInput(libraryPath + ": unregistration failed: " + DescribeFailure(hr));
}

}  // namespace kdhost
