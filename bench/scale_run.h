#pragma once
// Everything measured at one scale: the sample's creation, the run and
// its floor, each in a child process of its own.
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
    FloorFigures floor;
    std::string error;    // the step that failed, when one did
};

// Works in directory (created when missing); keep leaves its files there.
ScaleResult MeasureScale(double scale, const std::string& directory, bool keep);

}  // namespace bench
