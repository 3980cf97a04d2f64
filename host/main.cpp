// kdvq-upgrade: the command-line runner of the repository upgraders.
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/interruption.h"

int main(int argc, char** argv) {
    // Before any other thread starts, so that every thread leaves the
    // signals to the one that handles them.
    kdhost::interruption::Start();
    CLI::App app("Upgrades the repository of the workflow framework with the upgraders of kdVqUpgraders.",
                 "kdvq-upgrade");
    app.set_version_flag("--version", "kdvq-upgrade " KDVQ_VERSION_TEXT, "Show the version and exit");
    app.require_subcommand(1);
    std::vector<kdhost::Command> commands = kdhost::AddCommands(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        int status = app.exit(e);
        return status == 0 ? kdhost::kExitSuccess : kdhost::kExitBadInput;
    }
    try {
        for (const kdhost::Command& command : commands) {
            if (command.app->parsed()) return command.run();
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "kdvq-upgrade: %s\n", e.what());
        return kdhost::kExitBadInput;
    }
    return kdhost::kExitBadInput;
}
