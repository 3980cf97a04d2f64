// status: a repository's four versions and the upgraders that apply to it
// now, read without changing the repository.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/host_session.h"
#include "host/json_reports.h"
#include "host/library_registration.h"
#include "host/login.h"
#include "host/repository_connection.h"
#include "host/repository_versions.h"
#include "host/status_report.h"
#include "host/upgrade_preflight.h"
#include "host/upgrader_calls.h"

namespace kdhost {

namespace {

struct StatusOptions {
    std::string db;
    std::string prefix;
    std::string log;
    bool json = false;
};

EnabledAnswer EnabledNow(const UpgraderClassInfo& info, kdvq::IKDLogin* login, int32_t coreVersion) {
    EnabledAnswer answer{info.name, false, ""};
    if (UpgraderPtr upgrader = NewUpgrader(info.clsid, &answer.error)) {
        AskEnabled(upgrader.Get(), login, coreVersion, &answer.enabled, &answer.error);
    }
    return answer;
}

int RunStatusCommand(const StatusOptions& options) {
    Target target = ParseTarget(options.db);
    CheckStatusRequest(target, options.prefix, options.log);
    HostSession host({options.log, std::nullopt, nullptr, nullptr});
    std::vector<UpgraderClassInfo> classes = UpgraderClasses(true);
    com::ComPtr<ado::Connection> connection = OpenRepository(target, options.prefix, true);
    RepositoryVersions versions = ReadVersions(connection.Get(), options.prefix);
    std::vector<EnabledAnswer> answers;
    {
        com::ComPtr<Login> login = Login::Create(connection, options.prefix);
        for (const UpgraderClassInfo& info : classes) answers.push_back(EnabledNow(info, login.Get(), versions[0]));
    }
    int helperIndexes = connection->CountHelperIndexes();
    connection->Close();
    if (options.json) {
        std::fputs(StatusJson(target.text, versions, answers).c_str(), stdout);
    } else {
        std::string text = StatusText(target.text, versions, answers);
        if (helperIndexes > 0) {
            text += "Helper indices left by an interrupted run: " + std::to_string(helperIndexes) +
                    " (the next upgrade removes them first)\n";
        }
        std::fputs(text.c_str(), stdout);
    }
    return kExitSuccess;
}

}  // namespace

Command AddStatusCommand(CLI::App& app) {
    auto options = std::make_shared<StatusOptions>();
    CLI::App* sub =
        app.add_subcommand("status", "Show a repository's versions and the upgraders that apply to it now");
    sub->add_option("--db", options->db,
                    "The repository: a SQLite file, or odbc: followed by an ODBC connection string")
        ->required()
        ->type_name("TARGET");
    sub->add_option("--prefix", options->prefix, "The prefix of the repository's table names")->type_name("P");
    sub->add_option("--log", options->log, "The log file (default: the standard error stream)")->type_name("FILE");
    sub->add_flag("--json", options->json, "Print one JSON document");
    return {sub, [options] { return RunStatusCommand(*options); }};
}

}  // namespace kdhost
