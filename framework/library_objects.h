#pragma once
// What keeps this library in use: live upgrader objects and class-factory
// locks. Only this library's own objects count, so the answer to "may the
// library be unloaded" does not depend on other components of the process.
namespace kdvq {

void UpgraderObjectCreated();
void UpgraderObjectDestroyed();
long LiveUpgraderObjects();

void LockLibrary(bool lock);
long LibraryLocks();

}  // namespace kdvq
