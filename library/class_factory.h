#pragma once
// The class factory handed out for each upgrader class.
#include "library/class_table.h"
#include "platform/com/unknown.h"

namespace kdvq {

com::ComPtr<com::IClassFactory> NewUpgraderClassFactory(const UpgraderClass& upgraderClass);

}  // namespace kdvq
