// kdvq-bench: measures the whole upgrade of large sample repositories on
// SQLite against the engine's own floor (the same statements replayed
// with prepared statements), and how each upgrader's time grows with the
// data. Timings are of a shared machine and vary from run to run.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "bench/report.h"
#include "bench/scale_run.h"

namespace {

std::string DefaultDirectory() {
    const char* tmp = std::getenv("TMPDIR");
    return std::string(tmp && *tmp ? tmp : "/tmp") + "/kdvq-bench-" + std::to_string(::getpid());
}

std::string ScaleText(double scale) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", scale);
    return text;
}

// Replays the floor of a kept scale again, from its starting database and
// transcript, into a new copy, and prints it.
int ReplayKept(const std::string& scaleDirectory, bool skipHistoryUpdates) {
    namespace fs = std::filesystem;
    const std::string copy = scaleDirectory + "/floor-again.db";
    for (const std::string& path : {copy, copy + "-wal", copy + "-shm"}) fs::remove(path);
    try {
        fs::copy_file(scaleDirectory + "/start.db", copy);
        bench::PrintFloorAgain(stdout, bench::ReplayFloor(scaleDirectory + "/transcript.bin", copy,
                                                          [] { return true; }, skipHistoryUpdates));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "kdvq-bench: %s\n", e.what());
        return 2;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Benchmark of the upgrade on large sample repositories, against the engine's floor");
    std::vector<double> scales{1, 10};
    bool quick = false;
    bench::ScaleOptions options;
    std::string directory = DefaultDirectory();
    app.add_option("--scales", scales, "The scales to measure, smallest first (1 is about 20,000 transitions)")
        ->delimiter(',')
        ->check(CLI::PositiveNumber);
    app.add_flag("--quick", quick, "Measure at scales 0.1 and 1 instead (a few minutes)");
    app.add_flag("--keep", options.keep, "Keep the databases, transcripts and logs");
    app.add_flag("--alongside", options.alongside,
                 "Replay the floor while the run goes on, following its transcript, rather than after it "
                 "(about half the time on two processors; the two share the machine)");
    app.add_option("--stop-after", options.stopAfter,
                   "End each run after this upgrader class, e.g. KDUpgradeMobile832 (the upgraders before the "
                   "long ones, measured at large scales in minutes)");
    bool noHelperIndexes = false;
    app.add_flag("--no-helper-indexes", noHelperIndexes,
                 "Run as kdvq-upgrade --no-helper-indexes does: the engine left to itself");
    app.add_option("--plain-floor-up-to", options.plainFloorUpTo,
                   "Replay the plain floor (the engine alone, no helper indices) at scales up to this one only "
                   "(default 3: at scale 10 it takes over an hour)");
    app.add_option("--dir", directory, "Where to work (default: a new directory under $TMPDIR or /tmp)");
    std::string replay;
    bool skipHistoryUpdates = false;
    app.add_option("--replay", replay,
                   "Only replay the floor of a scale kept by --keep (its folder, e.g. DIR/scale-10) again");
    app.add_flag("--skip-history-updates", skipHistoryUpdates,
                 "With --replay: leave out the history's per-user UPDATEs (they change no row of the sample)");
    CLI11_PARSE(app, argc, argv);
    if (!replay.empty()) return ReplayKept(replay, skipHistoryUpdates);
    if (quick) scales = {0.1, 1};
    options.helperIndexes = !noHelperIndexes;

    // The upgrader classes are registered in a registry of the benchmark's
    // own, so that the user's is left alone.
    ::setenv("KDVQ_REGISTRY", (directory + "/registry.ini").c_str(), 1);

    bench::PrintMachine(stdout);
    std::vector<bench::ScaleResult> results;
    // A large scale's floor takes as long as its run: what the run alone
    // tells (times, memory, growth) is printed as soon as it is known.
    options.runMeasured = [&](const bench::ScaleResult& result) {
        bench::PrintRunEnded(stdout, result);
        if (!results.empty() && results.front().error.empty()) bench::PrintGrowth(stdout, results.front(), result);
        std::fflush(stdout);
    };
    bool failed = false;
    for (double scale : scales) {
        results.push_back(bench::MeasureScale(scale, directory + "/scale-" + ScaleText(scale), options));
        bench::PrintScale(stdout, results.back());
        std::fflush(stdout);
        failed |= !results.back().error.empty();
    }
    if (results.size() > 1 && !failed) bench::PrintGrowth(stdout, results.front(), results.back());
    if (options.keep)
        std::printf("\nFiles kept in %s\n", directory.c_str());
    else
        std::filesystem::remove_all(directory);
    return failed ? 1 : 0;
}
