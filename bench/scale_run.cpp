#include "bench/scale_run.h"

#include <chrono>
#include <filesystem>
#include <fstream>

#include "bench/child_process.h"
#include "bench/figures_text.h"

namespace bench {

namespace fs = std::filesystem;

namespace {

struct RunAndFloor {
    ChildOutcome run;
    ChildOutcome floor;  // not replayed after a failed run, unless alongside
};

// The run, and its floor after it or alongside it. With the floor
// alongside, the run's end is told to the floor's child by a marker file,
// made once the run's child has exited and so has closed the transcript.
RunAndFloor MeasureRunAndFloor(const std::string& run, const std::string& floor, const std::string& transcript,
                               const std::string& log, const ScaleOptions& options,
                               const std::function<void(const ChildOutcome&)>& runEnded) {
    auto measureRun = [&] {
        return EncodeRun(MeasureRun(run, transcript, log, options.stopAfter, options.helperIndexes));
    };
    auto replayFloor = [&](const std::function<bool()>& runFinished) {
        return EncodeFloor(ReplayFloor(transcript, floor, runFinished));
    };
    RunAndFloor outcome;
    if (!options.alongside) {
        outcome.run = RunInChild(measureRun);
        runEnded(outcome.run);
        if (outcome.run.error.empty()) outcome.floor = RunInChild([&] { return replayFloor([] { return true; }); });
        return outcome;
    }
    const std::string runDone = transcript + ".done";
    fs::remove(runDone);
    StartedChild runChild = StartChild(measureRun);
    StartedChild floorChild = StartChild([&] { return replayFloor([&] { return fs::exists(runDone); }); });
    outcome.run = WaitForChild(runChild);
    std::ofstream{runDone};
    outcome.floor = WaitForChild(floorChild);
    return outcome;
}

}  // namespace

ScaleResult MeasureScale(double scale, const std::string& directory, const ScaleOptions& options) {
    ScaleResult result;
    result.scale = scale;
    result.counts = kdhost::ScaledCounts(scale);
    fs::create_directories(directory);
    const std::string start = directory + "/start.db", run = directory + "/run.db", floor = directory + "/floor.db";
    const std::string plain = directory + "/plain.db";
    const std::string transcript = directory + "/transcript.bin", log = directory + "/run.log";
    for (const std::string& path : {start, run, floor, transcript, log, run + "-wal", run + "-shm",
                                    floor + "-wal", floor + "-shm", plain, plain + "-wal", plain + "-shm"})
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

    auto takeRun = [&](const ChildOutcome& child) {
        if (!child.error.empty()) return;
        result.run = DecodeRun(child.output);
        result.runPeakKiB = child.peakKiB;
        if (!options.alongside && options.runMeasured) options.runMeasured(result);
    };
    RunAndFloor measured = MeasureRunAndFloor(run, floor, transcript, log, options, takeRun);
    if (!measured.run.error.empty()) {
        result.error = "run: " + measured.run.error;
        return result;
    }
    if (options.alongside) takeRun(measured.run);
    if (!measured.floor.error.empty()) {
        result.error = "floor: " + measured.floor.error;
        return result;
    }
    result.floor = DecodeFloor(measured.floor.output);
    result.floorAlongside = options.alongside;
    if (!options.helperIndexes) {
        result.plainFloor = result.floor;
        result.plainFloorMeasured = true;
    } else if (scale <= options.plainFloorUpTo) {
        fs::copy_file(start, plain);
        ChildOutcome plainFloor = RunInChild(
            [&] { return EncodeFloor(ReplayFloor(transcript, plain, [] { return true; }, false, true)); });
        if (!plainFloor.error.empty()) {
            result.error = "plain floor: " + plainFloor.error;
            return result;
        }
        result.plainFloor = DecodeFloor(plainFloor.output);
        result.plainFloorMeasured = true;
    }

    if (!options.keep) fs::remove_all(directory);
    return result;
}

}  // namespace bench
