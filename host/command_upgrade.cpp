// upgrade: runs every upgrader that applies, pass after pass, on one
// repository.
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/host_session.h"
#include "host/interruption.h"
#include "host/json_reports.h"
#include "host/library_registration.h"
#include "host/live_status.h"
#include "host/login.h"
#include "host/progress_callback.h"
#include "host/progress_digest.h"
#include "host/repository_backup.h"
#include "host/repository_check.h"
#include "host/repository_connection.h"
#include "host/repository_versions.h"
#include "host/run_feedback.h"
#include "host/run_lock.h"
#include "host/run_presenter.h"
#include "host/upgrade_preflight.h"
#include "platform/automation/text_case.h"

namespace kdhost {

namespace {

struct UpgradeOptions {
    std::string db;
    std::string prefix;
    std::string databaseId;
    CLI::Option* databaseIdOption = nullptr;  // whether --database-id was given
    std::vector<std::string> settings;
    std::string log;
    bool json = false;
    std::string backup;  // --backup: where to copy the repository first
    bool noTransactions = false;
    bool refresh = false;  // --refresh: the final pass also on an up-to-date repository
    bool noHelperIndexes = false;  // --no-helper-indexes: the engine left to itself
    bool verbose = false;  // every progress text on the console
};

std::string DefaultLogPath(const Target& target) {
    return target.IsFile() ? target.path + ".log" : "kdvq-upgrade.log";
}

// Each upgrader runs in a transaction of its own, unless the option turns
// them off or the server cannot keep one as the upgraders need it.
bool UseTransactions(const UpgradeOptions& options, const std::string& provider, Console& console) {
    if (options.noTransactions) {
        console.Line("Transactions: off (--no-transactions); an interruption keeps what the running upgrader did");
        return false;
    }
    if (automation::ContainsTextIgnoringCase(provider, "Oracle")) {
        console.Line("Transactions: off; this server commits each definition statement by itself, so an "
                     "interrupted upgrader cannot be taken back: keep a backup");
        return false;
    }
    return true;
}

// The warnings and conflicts the upgraders left for the administrator,
// gathered after the run so that they are not lost among the progress.
void ShowAdministratorMessages(Console& console, const std::vector<std::string>& messages) {
    if (messages.empty()) return;
    console.Line("Messages for the administrator (" + std::to_string(messages.size()) + "):");
    for (const std::string& message : messages) console.Line("  " + message);
}

int RunUpgradeCommand(const UpgradeOptions& options) {
    Target target = ParseTarget(options.db);
    std::shared_ptr<const Settings> settings = LoadHostSettings(options.settings);
    std::string logPath = options.log.empty() ? DefaultLogPath(target) : options.log;
    std::optional<std::string> databaseId;
    if (options.databaseIdOption->count() > 0) databaseId = options.databaseId;
    databaseId =
        CheckUpgradeRequest({target, options.prefix, databaseId, *settings, logPath, true, !options.backup.empty()});
    std::unique_ptr<RunLock> lock = RunLock::Acquire(target);
    if (target.IsFile()) CheckRepositoryNotLocked(target.path);
    if (!options.backup.empty()) BackupTarget(target, options.backup);

    // With --json the document alone goes to the standard output.
    std::FILE* out = options.json ? stderr : stdout;
    Console console(out, ::isatty(::fileno(out)) != 0);
    HostSession host({logPath, databaseId, settings, &console});
    std::vector<UpgraderClassInfo> classes = UpgraderClasses(true);

    com::ComPtr<ado::Connection> connection = OpenRepository(target, options.prefix, false);
    RepositoryVersions before = ReadVersions(connection.Get(), options.prefix);
    console.Line("Upgrading " + target.text);
    if (!options.backup.empty()) console.Line("Backup: " + options.backup);
    console.Line("Versions before: " + DescribeVersions(before));
    host.Log().Write("kdvq-upgrade: upgrade of " + target.text + " started; versions " + DescribeVersions(before),
                     kLogInformation);

    // Helper indices an interrupted run left go before the first upgrader,
    // with the option or without it.
    connection->DropHelperIndexes();
    connection->UseHelperIndexes(!options.noHelperIndexes);
    bool transactions = UseTransactions(options, connection->Provider(), console);
    interruption::SetLog(&host.Log());
    interruption::SetConnection(connection.Get());
    RunResult run;
    std::vector<std::string> messages;
    {
        LiveStatus live(console);
        // A signal ends the process from another thread: the live line goes
        // first, so that the last line stands on its own.
        interruption::SetCleanup([&console] { console.Close(); });
        struct CleanupEnd {
            ~CleanupEnd() { interruption::SetCleanup(nullptr); }
        } cleanupEnd;
        ProgressDigest digest(console, &host.Log(), &live, options.verbose);
        com::ComPtr<Login> login = Login::Create(connection, options.prefix);
        com::ComPtr<ProgressCallback> callback = ProgressCallback::Create(console, &digest);
        RunPresenter presenter(console);
        RunFeedback feedback(presenter, digest, live, host.Log());
        run = RunUpgrade(
            classes,
            {connection.Get(), options.prefix, login.Get(), callback.Get(), transactions, options.refresh},
            feedback);
        messages = digest.AdministratorMessages();
    }
    ShowAdministratorMessages(console, messages);

    // After the last upgrader's commit, in a transaction of its own.
    connection->DropHelperIndexes();
    RepositoryVersions after = ReadVersions(connection.Get(), options.prefix);
    interruption::SetConnection(nullptr);
    connection->Close();
    int status = run.Succeeded() ? kExitSuccess : kExitUpgradeFailed;
    std::string ran = run.upToDate ? std::string("up to date, nothing changed")
                                   : std::to_string(run.outcomes.size()) + " upgraders ran, " +
                      (run.Succeeded() ? std::string("none") : std::to_string(run.FailureCount())) + " failed";
    console.Line("Versions after: " + DescribeVersions(after));
    host.Log().Write("kdvq-upgrade: upgrade of " + target.text + " finished; " + ran + "; versions " +
                         DescribeVersions(after),
                     run.Succeeded() ? kLogInformation : kLogFailure);
    if (run.upToDate) {
        // A file's final pass was tried and taken back; a server's was left out.
        console.Line(target.IsFile()
                         ? "Up to date: no upgrader applies and the indices are in order; nothing was changed."
                         : "Up to date: no upgrader applies; nothing was changed (--refresh re-creates the "
                           "indices and re-lists the system tables).");
    } else if (run.Succeeded()) {
        console.Line("Upgrade complete: " + ran + ".");
    } else {
        console.Interrupt();
        std::fprintf(stderr, "kdvq-upgrade: %s\n", FailureSummary(run, logPath).c_str());
    }
    console.Line("Log: " + logPath);
    if (options.json) std::fputs(UpgradeJson(target.text, before, after, run, status).c_str(), stdout);
    return status;
}

}  // namespace

Command AddUpgradeCommand(CLI::App& app) {
    auto options = std::make_shared<UpgradeOptions>();
    CLI::App* sub = app.add_subcommand("upgrade", "Upgrade a repository: run every upgrader that applies to it");
    sub->add_option("--db", options->db,
                    "The repository: a SQLite file, or odbc: followed by an ODBC connection string")
        ->required()
        ->type_name("TARGET");
    sub->add_option("--prefix", options->prefix, "The prefix of the repository's table names")->type_name("P");
    options->databaseIdOption =
        sub->add_option("--database-id", options->databaseId,
                        "The repository's identifier, given when an upgrader asks for it")
            ->type_name("ID");
    sub->add_option("--setting", options->settings,
                    "A host setting the upgraders may read, e.g. \"BulletinBoard Version/VersionName=9.3.1\"")
        ->type_name("KEY/NAME=VALUE");
    sub->add_option("--log", options->log, "The log file (default: the repository file's name plus .log)")
        ->type_name("FILE");
    sub->add_flag("--json", options->json, "Print one JSON document with the versions and the upgraders that ran");
    sub->add_option("--backup", options->backup,
                    "Copy the SQLite repository to this new file before anything changes (an existing file is refused)")
        ->type_name("FILE");
    sub->add_flag("--refresh", options->refresh,
                  "Re-create the indices and re-list the system tables even when the repository is up to date");
    sub->add_flag("--verbose", options->verbose,
                  "Show every progress text (by default a long run of them is counted; the log holds them all)");
    sub->add_flag("--no-transactions", options->noTransactions,
                  "Run the upgraders without a transaction each (an interrupted upgrader then keeps what it did)");
    sub->add_flag("--no-helper-indexes", options->noHelperIndexes,
                  "Leave the database engine to itself: make no helper indices where statements keep scanning a "
                  "large table");
    return {sub, [options] { return RunUpgradeCommand(*options); }};
}

}  // namespace kdhost
