#pragma once
// The floor of a run: the statements and row writes of its transcript,
// replayed straight into the engine with prepared statements (each
// statement with marks prepared once and reused) on a copy of the same
// starting database. Only the engine's own work is timed.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct FloorSection {
    std::string name;  // the upgrader, or kBetweenUpgraders
    double seconds = 0;
    double historyUpdateSeconds = 0;  // of which the history's per-user UPDATEs
    uint64_t statements = 0;
};

inline const std::string kBetweenUpgraders = "(host, between upgraders)";

struct FloorFigures {
    std::vector<FloorSection> sections;  // in the order they first ran
    double seconds = 0;
    uint64_t statements = 0;
    uint64_t failures = 0;  // statements the engine refused, as in the run
    uint64_t unreadable = 0;  // statements whose bound values could not be read back
    uint64_t skipped = 0;     // history per-user UPDATEs left out on request
    uint64_t helperWork = 0;  // statements of the helper indices' own work left out
};

// Replays the transcript as the run writes it, until runFinished answers
// true and all of it has been replayed; for a finished run's transcript,
// runFinished answers true from the start. skipHistoryUpdates leaves out
// the history's per-user UPDATEs: on a repository whose history has no
// user filled in yet they change no row, so what follows sees the same
// data, and at a large scale they are most of the replay's time.
// skipHelperWork leaves out the provider's own work on helper indices
// (plans read, indices made and dropped): the plain floor, the engine left
// to itself; with it, the run's own floor.
FloorFigures ReplayFloor(const std::string& transcriptPath, const std::string& dbPath,
                         const std::function<bool()>& runFinished, bool skipHistoryUpdates = false,
                         bool skipHelperWork = false);

}  // namespace bench
