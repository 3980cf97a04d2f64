// register / unregister: writes the upgrader library's classes into the
// component registry, or removes them.
#include <cstdio>
#include <memory>
#include <string>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/host_session.h"
#include "host/library_registration.h"
#include "platform/com/runtime.h"

namespace kdhost {

namespace {

struct RegisterOptions {
    std::string library;
};

Command AddRegistrationCommand(CLI::App& app, bool add) {
    auto options = std::make_shared<RegisterOptions>();
    CLI::App* sub = add ? app.add_subcommand("register", "Register the upgrader library's classes")
                        : app.add_subcommand("unregister", "Remove the upgrader library's classes from the registry");
    sub->add_option("--library", options->library, "The library (default: the one this runner was built with)")
        ->type_name("PATH");
    return {sub, [options, add] {
                // The library asks the host's category service while it
                // registers, so the host's classes must be present.
                HostSession host({"", std::nullopt, nullptr, nullptr});
                std::string library = options->library.empty() ? BuiltLibraryPath() : options->library;
                if (add) {
                    RegisterLibrary(library);
                } else {
                    UnregisterLibrary(library);
                }
                std::printf("%s %s %s %s\n", add ? "Registered" : "Unregistered", library.c_str(),
                            add ? "in" : "from", com::RegistryPath().c_str());
                return static_cast<int>(kExitSuccess);
            }};
}

}  // namespace

Command AddRegisterCommand(CLI::App& app) { return AddRegistrationCommand(app, true); }
Command AddUnregisterCommand(CLI::App& app) { return AddRegistrationCommand(app, false); }

}  // namespace kdhost
