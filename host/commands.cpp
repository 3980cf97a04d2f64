#include "host/commands.h"

namespace kdhost {

std::vector<Command> AddCommands(CLI::App& app) {
    return {AddUpgradeCommand(app),  AddPlanCommand(app),  AddStatusCommand(app),     AddListCommand(app),
            AddSampleCommand(app),   AddRegisterCommand(app), AddUnregisterCommand(app)};
}

}  // namespace kdhost
