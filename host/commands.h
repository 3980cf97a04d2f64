#pragma once
// The runner's commands. Each adds its subcommand with its options to the
// command line and gives back what to run when it was chosen; running
// answers the exit status (bad input raises BadInput instead).
#include <functional>
#include <vector>

#include <CLI/CLI.hpp>

namespace kdhost {

struct Command {
    CLI::App* app = nullptr;
    std::function<int()> run;
};

Command AddUpgradeCommand(CLI::App& app);
Command AddStatusCommand(CLI::App& app);
Command AddListCommand(CLI::App& app);
Command AddRegisterCommand(CLI::App& app);
Command AddUnregisterCommand(CLI::App& app);
Command AddSampleCommand(CLI::App& app);
Command AddPlanCommand(CLI::App& app);

// All of them, in the order the help lists them.
std::vector<Command> AddCommands(CLI::App& app);

}  // namespace kdhost
