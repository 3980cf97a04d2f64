// list: the upgrader classes with their ProgID, identifier, Name and
// Description.
#include <string>
#include <vector>

#include "framework/upgrader_interfaces.h"
#include "host/bad_input.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/host_session.h"
#include "host/library_registration.h"
#include "host/upgrader_calls.h"
#include "platform/com/runtime.h"

namespace kdhost {

namespace {

std::string DescriptionOf(kdvq::IKDVqDatabaseUpgrader* upgrader) {
    std::string description;
    com::HRESULT hr = upgrader->Description(&description);
    return com::Failed(hr) ? "(no description: " + DescribeFailure(hr) + ")" : description;
}

int RunListCommand() {
    HostSession host({"", std::nullopt, nullptr, nullptr});
    std::vector<UpgraderClassInfo> classes = UpgraderClasses(true);
    com::Registry registry = com::Registry::Load();
    // Descriptions may run over several lines; the console indents them.
    Console console(stdout, false);
    for (const UpgraderClassInfo& info : classes) {
        const com::ClassRegistration* registration = registry.Find(info.clsid);
        console.Line(info.name);
        console.Line("  ProgID:      " + (registration ? registration->progId : std::string()));
        console.Line("  Identifier:  " + com::FormatGuid(info.clsid));
        std::string error;
        if (UpgraderPtr upgrader = NewUpgrader(info.clsid, &error)) {
            console.Line("  Name:        " + NameOf(upgrader.Get(), ""));
            console.Line("  Description: " + DescriptionOf(upgrader.Get()));
        } else {
            console.Line("  Cannot be created: " + error);
        }
    }
    return kExitSuccess;
}

}  // namespace

Command AddListCommand(CLI::App& app) {
    CLI::App* sub =
        app.add_subcommand("list", "List the upgrader classes with their ProgID, identifier, name and description");
    return {sub, [] { return RunListCommand(); }};
}

}  // namespace kdhost
