#pragma once
// Release 9.3 rev2 of the core tables: a primary key on the id column of
// eight tables.
#include "core/core_upgrader.h"

namespace kdvq {

class KDVqUpgrader93rev2 : public CoreUpgrader {
public:
    KDVqUpgrader93rev2();

protected:
    bool OnExecute() override;
};

}  // namespace kdvq
