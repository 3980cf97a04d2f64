#pragma once
// Everything a command that talks to the upgrader library needs from the
// host: the log, the string table, the settings and the input box's
// answers, with the host's classes registered in the process while the
// session lives.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/console.h"
#include "host/host_services.h"

namespace kdhost {

struct HostOptions {
    std::string logPath;                    // empty: the standard error stream
    std::optional<std::string> databaseId;  // answers the "Database ID" input box
    std::shared_ptr<const Settings> settings;  // null: the settings file alone
    Console* console = nullptr;             // its open line is ended before a prompt
};

// The settings file with the --setting options (KEY/VALUENAME=VALUE) over
// it. Raises BadInput for a malformed option or file.
std::shared_ptr<const Settings> LoadHostSettings(const std::vector<std::string>& options);
// The host's string table. Raises BadInput when it cannot be read.
std::shared_ptr<const StringTable> LoadHostStrings();

class HostSession {
public:
    // Raises BadInput for a malformed settings file or string table.
    explicit HostSession(const HostOptions& options);

    LogSink& Log() { return *configuration_.log; }

private:
    HostConfiguration configuration_;
    std::unique_ptr<HostServices> services_;
};

// The title of the input box that asks for the repository's identifier,
// and the number of its question in the string table.
inline const std::string kDatabaseIdTitle = "Database ID";
constexpr int32_t kDatabaseIdQuestion = 609;

}  // namespace kdhost
