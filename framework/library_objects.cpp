#include "framework/library_objects.h"

#include <atomic>

namespace kdvq {

namespace {
std::atomic<long> liveObjects{0};
std::atomic<long> locks{0};
}  // namespace

void UpgraderObjectCreated() { ++liveObjects; }
void UpgraderObjectDestroyed() { --liveObjects; }
long LiveUpgraderObjects() { return liveObjects; }

void LockLibrary(bool lock) {
    if (lock) {
        ++locks;
    } else {
        --locks;
    }
}
long LibraryLocks() { return locks; }

}  // namespace kdvq
