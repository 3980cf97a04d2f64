// kdvq-upgrade: the command-line runner of the repository upgraders.
#include <cstdio>
#include <exception>

#include <CLI/CLI.hpp>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/interruption.h"
#include "host/json_reports.h"

namespace {

// Whether the chosen command was given --json: scripts that asked for a
// document get one for a refusal as well.
bool JsonRequested(CLI::App& app) {
    for (CLI::App* sub : app.get_subcommands({})) {
        CLI::Option* json = sub->get_option_no_throw("--json");
        if (json != nullptr && json->count() > 0) return true;
    }
    return false;
}

int Refuse(CLI::App& app, const std::string& reason) {
    std::fprintf(stderr, "kdvq-upgrade: %s\n", reason.c_str());
    if (JsonRequested(app)) std::fputs(kdhost::RefusalJson(reason, kdhost::kExitBadInput).c_str(), stdout);
    return kdhost::kExitBadInput;
}

}  // namespace

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
        // Help and the version exit 0; a real parse error is a refusal.
        if (app.exit(e) == 0) return kdhost::kExitSuccess;
        if (JsonRequested(app)) std::fputs(kdhost::RefusalJson(e.what(), kdhost::kExitBadInput).c_str(), stdout);
        return kdhost::kExitBadInput;
    }
    try {
        for (const kdhost::Command& command : commands) {
            if (command.app->parsed()) return command.run();
        }
    } catch (const std::exception& e) {
        return Refuse(app, e.what());
    }
    return kdhost::kExitBadInput;
}
