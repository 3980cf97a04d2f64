#pragma once
// The benchmark's printed report.
#include <cstdio>
#include <vector>

#include "bench/scale_run.h"

namespace bench {

// The machine the figures come from: processors and CPU model.
void PrintMachine(std::FILE* out);
// One scale: every upgrader against its floor, and the whole run.
void PrintScale(std::FILE* out, const ScaleResult& result);
// One scale's run as soon as it has ended, before its floor.
void PrintRunEnded(std::FILE* out, const ScaleResult& result);
// A floor replayed again on its own (kdvq-bench --replay).
void PrintFloorAgain(std::FILE* out, const FloorFigures& floor);
// How each upgrader's time grows from the first scale to the last.
void PrintGrowth(std::FILE* out, const ScaleResult& first, const ScaleResult& last);

}  // namespace bench
