#pragma once
// An upgrader class that is registered but whose steps are not built: it is
// never enabled and its Execute answers False.
#include <string>

#include "framework/upgrader_base.h"

namespace kdvq {
com::ComPtr<UpgraderBase> NewPlaceholderUpgrader(const std::string& className);
}
