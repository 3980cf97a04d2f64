#include "host/upgrade_passes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <limits>
#include <optional>
#include <map>
#include <set>

#include "framework/upgrader_interfaces.h"
#include "host/console.h"
#include "host/final_upgraders.h"
#include "host/interruption.h"
#include "host/progress_callback.h"
#include "host/repository_fingerprint.h"
#include "host/repository_versions.h"
#include "host/upgrader_calls.h"
#include "host/upgrader_releases.h"
#include "host/upgrader_transaction.h"
#include "platform/automation/collection.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdhost {

namespace {

class SilentObserver : public RunObserver {
public:
    void PassStarting(int, int32_t, bool) override {}
    void UpgraderStarting(const std::string&, const std::string&) override {}
    void UpgraderFinished(const UpgraderOutcome&) override {}
    void SystemTablesListed(const SystemTableList&) override {}
};

class Run {
public:
    Run(const std::vector<UpgraderClassInfo>& classes, const RunContext& context, RunObserver& observer)
        : classes_(ReleaseOrder(classes)), context_(context), observer_(observer) {}

    RunResult Go() {
        bool executed = true;
        bool chainsMoved = false;
        while (executed && result_.interruption.empty()) {
            executed = Pass(false);
            chainsMoved |= executed;
        }
        if (!result_.interruption.empty()) return std::move(result_);
        if (!chainsMoved && !context_.refresh && FinalPassChangesNothing()) {
            result_.upToDate = true;
            return std::move(result_);
        }
        Pass(true);
        return std::move(result_);
    }

private:
    // Whether the final pass would leave the repository as it is: tried
    // quietly in a transaction that is then taken back, comparing the
    // repository's definitions and the rows written. Where that cannot be
    // read (a server), an up-to-date repository is left alone.
    bool FinalPassChangesNothing() {
        try {
            return TryFinalPass();
        } catch (const std::exception&) {
            return false;  // then the final pass runs for real and reports what fails
        }
    }

    bool TryFinalPass() {
        ado::Connection* connection = context_.connection;
        std::optional<std::string> before = RepositoryFingerprint(connection);
        if (!before) return true;
        std::unique_ptr<std::FILE, int (*)(std::FILE*)> nowhere(std::fopen("/dev/null", "w"), std::fclose);
        if (!nowhere) return false;
        Console quiet(nowhere.get(), false);
        com::ComPtr<ProgressCallback> callback = ProgressCallback::Create(quiet);
        RunContext trial = context_;
        trial.callback = callback.Get();
        trial.transactions = false;  // the trial's own transaction holds it all
        SilentObserver silent;
        UpgraderTransaction transaction(connection, true);
        std::string error;
        if (!transaction.Begin(&error)) return false;
        Run run(classes_, trial, silent);
        run.Pass(true);
        std::optional<std::string> after = RepositoryFingerprint(connection);
        return run.result_.Succeeded() && after == before;  // the transaction's end takes it all back
    }

    // Runs one pass; true when it executed an upgrader.
    bool Pass(bool final) {
        int pass = ++result_.passes;
        int32_t coreVersion = 0;
        std::string error;
        if (!TryReadCoreVersion(context_.connection, context_.prefix, &coreVersion, &error)) {
            // Without the number no upgrader can be asked; going on with 0
            // would end the run as if nothing were left to do.
            result_.interruption = "the core version could not be read (" + error + ")";
            return false;
        }
        observer_.PassStarting(pass, coreVersion, final);
        bool executed = false;
        for (const UpgraderClassInfo& info : classes_) {
            if (done_.count(info.name) || RunsAfterChains(info.name) != final) continue;
            executed |= Offer(info, pass, coreVersion);
        }
        return executed;
    }

    // Asks one upgrader and runs it when it applies; true when it ran (or
    // failed, which also ends its part in this run).
    bool Offer(const UpgraderClassInfo& info, int pass, int32_t coreVersion) {
        UpgraderOutcome outcome;
        outcome.className = info.name;
        outcome.pass = pass;
        UpgraderPtr upgrader = Instance(info, outcome);
        if (!upgrader) return Finish(std::move(outcome));

        // Enabled may write (a missing version row), so it runs inside the
        // upgrader's transaction too.
        UpgraderTransaction transaction(context_.connection, context_.transactions);
        if (!transaction.Begin(&outcome.error)) return Fail(std::move(outcome), "Enabled");
        bool enabled = false;
        if (!AskEnabled(upgrader.Get(), context_.login, coreVersion, &enabled, &outcome.error)) {
            std::string ignored;
            transaction.Commit(&ignored);
            return Fail(std::move(outcome), "Enabled");
        }
        if (!enabled) {
            // A commit that fails takes back only what Enabled wrote; the
            // upgrader is asked again in the next pass.
            std::string ignored;
            transaction.Commit(&ignored);
            return false;
        }

        observer_.UpgraderStarting(info.name, NameOf(upgrader.Get(), info.name));
        interruption::SetUpgrader(info.name, context_.connection->InOuterTransaction());
        automation::VARIANT_BOOL answer = automation::VARIANT_FALSE;
        auto start = std::chrono::steady_clock::now();
        com::HRESULT hr = upgrader->Execute(context_.callback, &answer);
        std::string commitError;
        bool committed = transaction.Commit(&commitError);
        interruption::SetUpgrader("", false);
        outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (com::Failed(hr)) {
            outcome.error = DescribeFailure(hr);
            if (!committed) outcome.error += "; " + commitError;
            return Fail(std::move(outcome), "Execute");
        }
        if (!committed) {
            outcome.error = commitError;
            return Fail(std::move(outcome), "commit");
        }
        outcome.result = answer != automation::VARIANT_FALSE;
        outcome.failure = !outcome.result && !FalseIsNoFailure(info.name);
        std::string part = SystemTablePart(info.name);
        bool listTables = outcome.result && !part.empty();
        Finish(std::move(outcome));
        if (listTables) ListSystemTables(upgrader.Get(), info.name, part);
        return true;
    }

    UpgraderPtr Instance(const UpgraderClassInfo& info, UpgraderOutcome& outcome) {
        auto found = instances_.find(info.name);
        if (found != instances_.end()) return found->second;
        UpgraderPtr upgrader = NewUpgrader(info.clsid, &outcome.error);
        if (!upgrader) {
            outcome.failedCall = "create";
            outcome.failure = true;
            return nullptr;
        }
        instances_[info.name] = upgrader;
        return upgrader;
    }

    bool Fail(UpgraderOutcome outcome, const std::string& call) {
        outcome.failedCall = call;
        outcome.failure = true;
        return Finish(std::move(outcome));
    }

    // Records the outcome; the upgrader is done for this run.
    bool Finish(UpgraderOutcome outcome) {
        done_.insert(outcome.className);
        instances_.erase(outcome.className);
        observer_.UpgraderFinished(outcome);
        result_.outcomes.push_back(std::move(outcome));
        return true;
    }

    void ListSystemTables(kdvq::IKDVqDatabaseUpgrader* upgrader, const std::string& className,
                          const std::string& part) {
        automation::Variant tables;
        if (com::Failed(upgrader->TavixSystemTables(&tables))) {
            com::TakeErrorInfo();
            return;
        }
        SystemTableList list{part, className, {}};
        if (com::ComPtr<automation::ICollection> items = automation::CollectionOf(tables)) {
            for (int32_t i = 1; i <= items->Count(); ++i) list.tables.push_back(items->Item(i).CStr());
        }
        observer_.SystemTablesListed(list);
        result_.systemTables.push_back(std::move(list));
    }

    // Within a pass the upgraders are offered oldest release first (by the
    // number each writes), registration order breaking ties. A run that
    // starts where an interrupted one stopped then takes the upgraders in
    // the order an uninterrupted run does, whatever pass it stopped in: an
    // upgrader of an older release, such as mobile 8.3.2 moving the packet
    // identifiers out of the design table, always comes before one of a
    // newer release that removes what it moves.
    static std::vector<UpgraderClassInfo> ReleaseOrder(std::vector<UpgraderClassInfo> classes) {
        auto release = [](const UpgraderClassInfo& info) {
            std::optional<UpgraderRelease> own = ReleaseOfUpgrader(info.name);
            return own ? own->version : std::numeric_limits<int32_t>::max();
        };
        std::stable_sort(classes.begin(), classes.end(),
                         [&](const UpgraderClassInfo& a, const UpgraderClassInfo& b) { return release(a) < release(b); });
        return classes;
    }

    const std::vector<UpgraderClassInfo> classes_;
    const RunContext& context_;
    RunObserver& observer_;
    RunResult result_;
    std::set<std::string> done_;
    std::map<std::string, UpgraderPtr> instances_;
};

}  // namespace

bool RunResult::Succeeded() const { return FailureCount() == 0 && interruption.empty(); }

int RunResult::FailureCount() const {
    int count = 0;
    for (const UpgraderOutcome& outcome : outcomes) count += outcome.failure ? 1 : 0;
    return count;
}

RunResult RunUpgrade(const std::vector<UpgraderClassInfo>& classes, const RunContext& context,
                     RunObserver& observer) {
    return Run(classes, context, observer).Go();
}

}  // namespace kdhost
