#pragma once
// The figures a child process measured, as lines of tab-separated fields
// for the trip back to the parent.
#include <string>

#include "bench/floor_replay.h"
#include "bench/run_measure.h"

namespace bench {

std::string EncodeRun(const RunFigures& figures);
RunFigures DecodeRun(const std::string& text);

std::string EncodeFloor(const FloorFigures& figures);
FloorFigures DecodeFloor(const std::string& text);

}  // namespace bench
