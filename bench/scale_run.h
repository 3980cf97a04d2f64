#pragma once
// Everything measured at one scale: the sample's creation, the run and
// its floor, each in a child process of its own.
#include <functional>
#include <string>

#include "bench/floor_replay.h"
#include "bench/run_measure.h"
#include "host/sample_scale.h"

namespace bench {

struct ScaleResult {
    double scale = 0;
    kdhost::SampleScaleCounts counts;
    double sampleSeconds = 0;
    RunFigures run;
    long runPeakKiB = 0;  // the whole run's process
    FloorFigures floor;       // the run's own floor: its statements, helper indices included
    FloorFigures plainFloor;  // the engine left to itself, when measured
    bool plainFloorMeasured = false;
    bool floorAlongside = false;  // replayed while the run went on, the two sharing the machine
    std::string error;    // the step that failed, when one did
};

struct ScaleOptions {
    bool keep = false;       // leave the working files in place
    bool alongside = false;  // replay the floor while the run goes on, rather than after it
    std::string stopAfter;   // end the run after this upgrader class (empty: the whole run)
    bool helperIndexes = true;  // false: the run as with --no-helper-indexes
    // The plain floor is replayed up to this scale only (at scale 10 it
    // takes over an hour); without helper indices it is the run's own.
    double plainFloorUpTo = 3;
    // Told the run's figures as soon as the run has ended, before its floor
    // (which takes as long again) when the floor is replayed after it.
    std::function<void(const ScaleResult&)> runMeasured;
};

// Works in directory (created when missing).
ScaleResult MeasureScale(double scale, const std::string& directory, const ScaleOptions& options);

}  // namespace bench
