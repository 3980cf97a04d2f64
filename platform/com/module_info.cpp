// Which library (or the program) holds a given address.
#include <dlfcn.h>
#include <limits.h>
#include <link.h>
#include <stdlib.h>
#include <unistd.h>

#include "platform/com/runtime.h"

namespace com {

namespace {

std::string ProgramPath() {
    char buf[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    return n > 0 ? std::string(buf, static_cast<size_t>(n)) : std::string();
}

}  // namespace

std::string ModulePathOf(const void* address) {
    Dl_info info{};
    link_map* map = nullptr;
    if (!dladdr1(address, &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) || !map) return "";
    // The program itself has no name of its own in the link map.
    if (!map->l_name || !*map->l_name) return ProgramPath();
    char resolved[PATH_MAX];
    return realpath(map->l_name, resolved) ? std::string(resolved) : std::string(map->l_name);
}

std::string ModuleNameOf(const void* address) {
    std::string name = ModulePathOf(address);
    const size_t slash = name.rfind('/');
    if (slash != std::string::npos) name.erase(0, slash + 1);
    if (name.compare(0, 3, "lib") == 0 && name.size() > 3) name.erase(0, 3);
    // "x.so" and versioned "x.so.9.3" lose everything from ".so"; other
    // names lose their last extension.
    size_t so = name.find(".so");
    while (so != std::string::npos && so + 3 != name.size() && name[so + 3] != '.') so = name.find(".so", so + 1);
    if (so != std::string::npos) {
        name.erase(so);
    } else if (const size_t dot = name.rfind('.'); dot != std::string::npos && dot > 0) {
        name.erase(dot);
    }
    return name;
}

}  // namespace com
