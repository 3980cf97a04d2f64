#include "host/connection_upgrade.h"

#include "host/login.h"
#include "host/progress_callback.h"

namespace kdhost {

RunResult UpgradeConnection(const com::ComPtr<ado::Connection>& connection, const std::string& prefix,
                            const std::vector<UpgraderClassInfo>& classes, Console& console, RunObserver& observer) {
    com::ComPtr<Login> login = Login::Create(connection, prefix);
    com::ComPtr<ProgressCallback> callback = ProgressCallback::Create(console);
    return RunUpgrade(classes, {connection.Get(), prefix, login.Get(), callback.Get()}, observer);
}

}  // namespace kdhost
