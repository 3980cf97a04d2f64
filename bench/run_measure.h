#pragma once
// One upgrade run in this process, as the runner does it, measured per
// upgrader while its statements are recorded in a transcript.
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct UpgraderFigures {
    std::string className;
    double seconds = 0;       // from its start to its outcome
    int64_t rowsChanged = 0;  // rows its statements and row writes changed
    double historyUpdateSeconds = 0;  // of which the engine's time in the history's per-user UPDATEs
    int64_t peakKiB = 0;      // the process's peak resident memory while it ran
    bool succeeded = false;
};

struct RunFigures {
    std::vector<UpgraderFigures> upgraders;  // in the order they ran
    double seconds = 0;                      // the whole run, reading the versions included
    int64_t rowsChanged = 0;
    bool succeeded = false;
};

// Upgrades the SQLite repository at dbPath with every upgrader that
// applies; the statements go to transcriptPath, the run's log to logPath.
// With stopAfter, the run ends once that upgrader class has run, so that
// the upgraders before a long one can be measured at large scales alone.
// helperIndexes: as the runner without --no-helper-indexes (the provider
// makes helper indices, and all are dropped at the run's end).
RunFigures MeasureRun(const std::string& dbPath, const std::string& transcriptPath, const std::string& logPath,
                      const std::string& stopAfter, bool helperIndexes);

// The process's peak resident memory (VmHWM) in KiB, and a reset of it so
// that the next reading covers what follows only.
int64_t PeakResidentKiB();
void ResetPeakResident();

}  // namespace bench
