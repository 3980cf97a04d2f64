#pragma once
// The upgrader classes as the component registry knows them, and the
// registration of the upgrader library. The runner works right after a
// build without a separate registration step: when the registry lacks the
// upgrader classes (or names a library file that is gone), it registers
// the library it was built with.
#include <string>
#include <vector>

#include "host/upgrade_passes.h"

namespace kdhost {

// libkdVqUpgraders.so in ../lib/kdvq-upgraders (installed) or ../lib (the
// build tree) next to the executable when present, else the library of the
// build the runner comes from.
std::string BuiltLibraryPath();

// The classes of the upgrader category in registration order. With
// registerWhenMissing, registers the built library first when needed.
// Raises BadInput when there are none.
std::vector<UpgraderClassInfo> UpgraderClasses(bool registerWhenMissing);

// Registers (or unregisters) a library's classes; raises BadInput with the
// library's failure.
void RegisterLibrary(const std::string& libraryPath);
void UnregisterLibrary(const std::string& libraryPath);

}  // namespace kdhost
