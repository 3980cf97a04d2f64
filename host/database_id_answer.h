#pragma once
// The repository's identifier for a run in which an upgrader will ask for
// it: asked once on the terminal before the first upgrader, since a run
// without one would stop half-way with those upgraders answering False.
#include <string>
#include <vector>

#include "host/target.h"

namespace kdhost {

// asking: the upgraders that will ask (not empty). Asks on the terminal
// until an acceptable identifier is typed; raises BadInput, naming the
// upgraders, when there is no terminal or no identifier is typed.
std::string AskForDatabaseIdNow(const Target& target, const std::vector<std::string>& asking);

}  // namespace kdhost
