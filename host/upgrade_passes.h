#pragma once
// One upgrade run over the upgrader classes of the category.
//
// The classes are walked in registration order, in passes. At the start of
// a pass the core version is read once and every Enabled of the pass gets
// that same number; an upgrader whose Enabled answers True is executed at
// once. Each upgrader executes at most once per run (a failed one is not
// retried), and passes repeat until one executes nothing, so every chain
// climbs as far as its upgraders take it. The upgraders that move no
// version (final_upgraders.h) are left out of the passes and run in one
// final pass afterwards, where the marking upgraders' system-table lists
// are collected. When no chain upgrader applied, the final pass is first
// tried in a transaction that is taken back; if it would change nothing
// the run ends there, up to date, and the repository is left untouched.
#include <cstdint>
#include <string>
#include <vector>

#include "framework/host_interfaces.h"
#include "platform/ado/ado.h"
#include "platform/com/guid.h"

namespace kdhost {

struct UpgraderClassInfo {
    std::string name;
    com::CLSID clsid;
};

struct UpgraderOutcome {
    std::string className;
    int pass = 0;             // the pass it ran in; the final pass follows the last
    bool result = false;      // what Execute answered (False when a call failed)
    std::string failedCall;   // "create", "Enabled", "Execute" or "commit" when that call failed
    std::string error;        // the failure's description then
    bool failure = false;     // counts as a failure of the run
    double seconds = 0;       // time spent in Execute
};

struct SystemTableList {
    std::string part;
    std::string className;
    std::vector<std::string> tables;
};

struct RunResult {
    std::vector<UpgraderOutcome> outcomes;  // in the order they ran
    std::vector<SystemTableList> systemTables;
    int passes = 0;                         // including the final pass
    // No upgrader of a version chain applied, and the upgraders of the
    // final pass had nothing to change (or, where that cannot be tried,
    // were left out): the run changed nothing.
    bool upToDate = false;
    // Set when the run stopped early for a reason outside the upgraders
    // (the core version could not be read); the run then did not succeed.
    std::string interruption;
    bool Succeeded() const;
    int FailureCount() const;
};

// What the run reports as it goes (the console shows it).
class RunObserver {
public:
    virtual ~RunObserver() = default;
    virtual void PassStarting(int pass, int32_t coreVersion, bool final) = 0;
    virtual void UpgraderStarting(const std::string& className, const std::string& name) = 0;
    virtual void UpgraderFinished(const UpgraderOutcome& outcome) = 0;
    virtual void SystemTablesListed(const SystemTableList& list) = 0;
};

struct RunContext {
    ado::Connection* connection = nullptr;
    std::string prefix;
    kdvq::IKDLogin* login = nullptr;
    kdvq::IKDProgressCallback* callback = nullptr;
    // Each upgrader's Enabled and Execute run in a transaction of their own
    // (upgrader_transaction.h).
    bool transactions = true;
    // Run the final pass even when the repository is up to date, and keep
    // what it does.
    bool refresh = false;
};

RunResult RunUpgrade(const std::vector<UpgraderClassInfo>& classes, const RunContext& context,
                     RunObserver& observer);

}  // namespace kdhost
