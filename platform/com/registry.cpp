// The registry's content: classes and interface descriptions, kept in
// registration order.
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>

#include "platform/automation/text_case.h"
#include "platform/com/runtime.h"

namespace com {

namespace {

std::string EnvOrEmpty(const char* name) {
    const char* value = getenv(name);
    return value ? value : "";
}

// Replaces the entry with the same identifier in place, or appends.
template <class Entry>
void Upsert(std::vector<Entry>& entries, const GUID& id, GUID Entry::*key, Entry entry) {
    auto it = std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.*key == id; });
    if (it != entries.end()) {
        *it = std::move(entry);
    } else {
        entries.push_back(std::move(entry));
    }
}

template <class Entry>
void EraseById(std::vector<Entry>& entries, const GUID& id, GUID Entry::*key) {
    entries.erase(std::remove_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.*key == id; }),
                  entries.end());
}

}  // namespace

std::string RegistryPath() {
    const std::string explicitPath = EnvOrEmpty("KDVQ_REGISTRY");
    if (!explicitPath.empty()) return explicitPath;
    const std::string config = EnvOrEmpty("XDG_CONFIG_HOME");
    if (!config.empty() && config[0] == '/') return config + "/kdvq/registry.ini";
    std::string home = EnvOrEmpty("HOME");
    if (home.empty()) {
        const passwd* user = getpwuid(getuid());
        home = user && user->pw_dir ? user->pw_dir : "";
    }
    return home + "/.config/kdvq/registry.ini";
}

void Registry::RegisterClass(const ClassRegistration& reg) { Upsert(classes_, reg.clsid, &ClassRegistration::clsid, reg); }

void Registry::UnregisterClass(REFCLSID clsid) { EraseById(classes_, clsid, &ClassRegistration::clsid); }

void Registry::RegisterInterface(REFIID iid, const std::string& name, const std::string& libraryPath) {
    Upsert(interfaces_, iid, &InterfaceRegistration::iid, InterfaceRegistration{iid, name, libraryPath});
}

void Registry::UnregisterInterface(REFIID iid) { EraseById(interfaces_, iid, &InterfaceRegistration::iid); }

const ClassRegistration* Registry::Find(REFCLSID clsid) const {
    for (const auto& c : classes_) {
        if (c.clsid == clsid) return &c;
    }
    return nullptr;
}

const ClassRegistration* Registry::FindByProgId(const std::string& progId) const {
    for (const auto& c : classes_) {
        if (!c.progId.empty() && automation::SameTextIgnoringCase(c.progId, progId)) return &c;
    }
    return nullptr;
}

const Registry::InterfaceRegistration* Registry::FindInterface(REFIID iid) const {
    for (const auto& i : interfaces_) {
        if (i.iid == iid) return &i;
    }
    return nullptr;
}

std::vector<ClassRegistration> Registry::ClassesOfCategory(const GUID& category) const {
    std::vector<ClassRegistration> found;
    for (const auto& c : classes_) {
        const auto& cats = c.implementedCategories;
        if (std::find(cats.begin(), cats.end(), category) != cats.end()) found.push_back(c);
    }
    return found;
}

}  // namespace com
