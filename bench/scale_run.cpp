#include "bench/scale_run.h"

#include <chrono>
#include <filesystem>

#include "bench/child_process.h"
#include "bench/figures_text.h"

namespace bench {

namespace fs = std::filesystem;

ScaleResult MeasureScale(double scale, const std::string& directory, bool keep) {
    ScaleResult result;
    result.scale = scale;
    result.counts = kdhost::ScaledCounts(scale);
    fs::create_directories(directory);
    const std::string start = directory + "/start.db", run = directory + "/run.db", floor = directory + "/floor.db";
    const std::string transcript = directory + "/transcript.bin", log = directory + "/run.log";
    for (const std::string& path : {start, run, floor, transcript, log, run + "-wal", run + "-shm",
                                    floor + "-wal", floor + "-shm"})
        fs::remove(path);

    ChildOutcome sample = RunInChild([&] {
        auto begin = std::chrono::steady_clock::now();
        kdhost::CreateScaledSample("8.2", start, scale);
        return std::to_string(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    });
    if (!sample.error.empty()) {
        result.error = "sample: " + sample.error;
        return result;
    }
    result.sampleSeconds = std::stod(sample.output);
    fs::copy_file(start, run);
    fs::copy_file(start, floor);

    ChildOutcome measured = RunInChild([&] { return EncodeRun(MeasureRun(run, transcript, log)); });
    if (!measured.error.empty()) {
        result.error = "run: " + measured.error;
        return result;
    }
    result.run = DecodeRun(measured.output);
    result.runPeakKiB = measured.peakKiB;

    ChildOutcome replayed = RunInChild([&] { return EncodeFloor(ReplayFloor(transcript, floor)); });
    if (!replayed.error.empty()) {
        result.error = "floor: " + replayed.error;
        return result;
    }
    result.floor = DecodeFloor(replayed.output);

    if (!keep) fs::remove_all(directory);
    return result;
}

}  // namespace bench
