// plan: shows which upgraders an upgrade would run and the statements they
// would send, by upgrading a temporary copy of a SQLite repository; the
// repository itself is left exactly as it was.
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/connection_upgrade.h"
#include "host/fault_injection.h"
#include "host/host_session.h"
#include "host/interruption.h"
#include "host/json_reports.h"
#include "host/library_registration.h"
#include "host/plan_listing.h"
#include "host/provider_tap.h"
#include "host/repository_backup.h"
#include "host/repository_versions.h"
#include "host/run_presenter.h"
#include "host/upgrade_preflight.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace kdhost {

namespace {

struct PlanOptions {
    std::string db;
    std::string prefix;
    std::string databaseId;
    CLI::Option* databaseIdOption = nullptr;  // whether --database-id was given
    std::vector<std::string> settings;
    bool verbose = false;  // every row write listed
    bool json = false;
};

// A folder of our own for the copy, removed with everything in it on every
// way out: when the command ends, raises, or is interrupted by a signal.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kdvq-plan-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw BadInput(pattern + ": a temporary folder cannot be made");
        path_ = pattern;
        interruption::SetCleanup([path = path_] { Remove(path); });
    }
    ~ScratchFolder() {
        interruption::SetCleanup(nullptr);
        Remove(path_);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    static void Remove(const std::string& path) {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::string path_;
};

std::string Outcome(const RunResult& run) {
    std::string which;
    for (const UpgraderOutcome& outcome : run.outcomes) {
        if (!outcome.failure) continue;
        which += (which.empty() ? "" : ", ") + outcome.className +
                 (outcome.failedCall.empty() ? " would answer False" : " would fail in " + outcome.failedCall);
    }
    std::string ran = std::to_string(run.outcomes.size()) + " upgraders would run";
    return which.empty() ? "Plan complete: " + ran + ", none would fail."
                         : "Plan complete: " + ran + "; the upgrade would be incomplete: " + which + ".";
}

int RunPlanCommand(const PlanOptions& options) {
    Target target = ParseTarget(options.db);
    if (!target.IsFile()) throw BadInput("plan works on SQLite repository files only: it upgrades a copy of the file");
    std::shared_ptr<const Settings> settings = LoadHostSettings(options.settings);
    std::optional<std::string> databaseId;
    if (options.databaseIdOption->count() > 0) databaseId = options.databaseId;
    databaseId = CheckUpgradeRequest({target, options.prefix, databaseId, *settings, "", false, false});
    ScratchFolder scratch;
    std::string copy = scratch.File("repository.db");
    BackupRepositoryFile(target.path, copy);

    // With --json the document alone goes to the standard output.
    Console console(options.json ? stderr : stdout, false);
    RunPresenter presenter(console, false);
    PlanListing listing(options.json ? nullptr : &console, options.json ? nullptr : &presenter, options.verbose);
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> nowhere(std::fopen("/dev/null", "w"), std::fclose);
    if (!nowhere) throw BadInput("/dev/null cannot be opened");
    // The upgraders' own step texts are not part of the plan.
    Console steps(nowhere.get(), false);
    HostSession host({scratch.File("plan.log"), databaseId, settings, &console});
    std::vector<UpgraderClassInfo> classes = UpgraderClasses(true);

    com::ComPtr<ado::Connection> connection = ado::NewConnection();
    bool showing = false;
    CallListener testHook = TestHookListener();
    connection->OpenWith(TapProvider(ado::OpenSqliteProvider(copy, ado::SqliteOpenMode::kReadWrite),
                                     [&](TappedCall call, const std::string& text) {
                                         if (testHook) testHook(call, text);
                                         if (showing) listing.Call(call, text);
                                     }));
    // Helper indices an interrupted run left in the file are not the
    // repository's: the copy goes without them, as an upgrade would.
    connection->DropHelperIndexes();
    RepositoryVersions before = ReadVersions(connection.Get(), options.prefix);
    console.Line("Plan for " + target.text + " (an upgrade of a temporary copy; the repository is not changed)");
    console.Line("Versions now: " + DescribeVersions(before));
    RunResult run;
    {
        showing = true;
        run = UpgradeConnection(connection, options.prefix, classes, steps, listing);
        showing = false;
    }
    RepositoryVersions after = ReadVersions(connection.Get(), options.prefix);
    connection->Close();
    console.Line("Versions after the upgrade would be: " + DescribeVersions(after));
    console.Line(Outcome(run));
    int status = run.Succeeded() ? kExitSuccess : kExitUpgradeFailed;
    if (options.json) {
        std::fputs(PlanJson(target.text, before, after, run, listing.Upgraders(), status).c_str(), stdout);
    }
    return status;
}

}  // namespace

Command AddPlanCommand(CLI::App& app) {
    auto options = std::make_shared<PlanOptions>();
    CLI::App* sub = app.add_subcommand(
        "plan", "Show the upgraders an upgrade would run and their statements, by upgrading a temporary copy");
    sub->add_option("--db", options->db, "The repository: a SQLite file")->required()->type_name("TARGET");
    sub->add_option("--prefix", options->prefix, "The prefix of the repository's table names")->type_name("P");
    options->databaseIdOption =
        sub->add_option("--database-id", options->databaseId,
                        "The repository's identifier, given when an upgrader asks for it")
            ->type_name("ID");
    sub->add_option("--setting", options->settings,
                    "A host setting the upgraders may read, e.g. \"BulletinBoard Version/VersionName=9.3.1\"")
        ->type_name("KEY/NAME=VALUE");
    sub->add_flag("--verbose", options->verbose, "List every row added or changed (by default they are counted)");
    sub->add_flag("--json", options->json,
                  "Print one JSON document with each upgrader's statements and row counts");
    return {sub, [options] { return RunPlanCommand(*options); }};
}

}  // namespace kdhost
