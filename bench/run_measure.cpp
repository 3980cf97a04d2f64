#include "bench/run_measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>

#include "bench/transcript.h"
#include "host/console.h"
#include "host/host_session.h"
#include "host/library_registration.h"
#include "host/login.h"
#include "host/progress_callback.h"
#include "host/repository_connection.h"
#include "host/run_presenter.h"
#include "host/target.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// Shows the run as the runner does (the console's cost is part of a run)
// and measures each upgrader between its start and its outcome.
class MeasuringObserver : public kdhost::RunObserver {
public:
    // Thrown out of the run once the upgrader to stop after has finished.
    struct Stop {};

    MeasuringObserver(kdhost::RunObserver& shown, RunFigures& figures, const std::string& stopAfter)
        : shown_(shown), figures_(figures), stopAfter_(stopAfter) {}

    void PassStarting(int pass, int32_t coreVersion, bool final) override {
        shown_.PassStarting(pass, coreVersion, final);
    }

    void UpgraderStarting(const std::string& className, const std::string& name) override {
        shown_.UpgraderStarting(className, name);
        MarkSection(className);
        ResetPeakResident();
        started_ = className;
        changesAtStart_ = RecordedRowChanges();
        historyAtStart_ = RecordedHistoryUpdateSeconds();
        start_ = Clock::now();
    }

    void UpgraderFinished(const kdhost::UpgraderOutcome& outcome) override {
        double seconds = SecondsSince(start_);
        shown_.UpgraderFinished(outcome);
        if (outcome.className != started_) return;  // failed before it started
        MarkSection("");
        figures_.upgraders.push_back(
            {started_, seconds, RecordedRowChanges() - changesAtStart_,
             RecordedHistoryUpdateSeconds() - historyAtStart_, PeakResidentKiB(), !outcome.failure});
        started_.clear();
        if (outcome.className == stopAfter_) throw Stop{};
    }

    void SystemTablesListed(const kdhost::SystemTableList& list) override { shown_.SystemTablesListed(list); }

private:
    kdhost::RunObserver& shown_;
    RunFigures& figures_;
    const std::string stopAfter_;
    std::string started_;
    int64_t changesAtStart_ = 0;
    double historyAtStart_ = 0;
    Clock::time_point start_;
};

}  // namespace

int64_t PeakResidentKiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.compare(0, 6, "VmHWM:") == 0) return std::stoll(line.substr(6));
    return 0;
}

void ResetPeakResident() {
    // Writing 5 to clear_refs resets the peak to the current size.
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5";
}

RunFigures MeasureRun(const std::string& dbPath, const std::string& transcriptPath, const std::string& logPath,
                      const std::string& stopAfter, bool helperIndexes) {
    RunFigures figures;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> devNull(std::fopen("/dev/null", "w"), std::fclose);
    kdhost::Console console(devNull.get(), false);
    kdhost::HostSession host({logPath, std::string("BENCH-REPOSITORY"), nullptr, &console});
    std::vector<kdhost::UpgraderClassInfo> classes = kdhost::UpgraderClasses(true);

    StartRecording(transcriptPath);
    auto start = Clock::now();
    {
        com::ComPtr<ado::Connection> connection = kdhost::OpenRepository(kdhost::ParseTarget(dbPath), "", false);
        connection->UseHelperIndexes(helperIndexes);
        com::ComPtr<kdhost::Login> login = kdhost::Login::Create(connection, "");
        com::ComPtr<kdhost::ProgressCallback> callback = kdhost::ProgressCallback::Create(console);
        kdhost::RunPresenter presenter(console);
        MeasuringObserver observer(presenter, figures, stopAfter);
        try {
            kdhost::RunResult run = kdhost::RunUpgrade(classes, {connection.Get(), "", login.Get(), callback.Get()},
                                                       observer);
            figures.succeeded = run.Succeeded();
        } catch (const MeasuringObserver::Stop&) {
            figures.succeeded = std::all_of(figures.upgraders.begin(), figures.upgraders.end(),
                                            [](const UpgraderFigures& u) { return u.succeeded; });
        }
        connection->DropHelperIndexes();
        connection->Close();
    }
    figures.seconds = SecondsSince(start);
    figures.rowsChanged = RecordedRowChanges();
    StopRecording();
    return figures;
}

}  // namespace bench
