#pragma once
// Invariant checks of the fuzz targets: a broken invariant aborts, which
// libFuzzer reports as a crash and saves the input that caused it.
#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

inline void Check(bool holds, const char* invariant, const std::string& input) {
    if (holds) return;
    std::fprintf(stderr, "invariant broken: %s\ninput: [%s]\n", invariant, input.c_str());
    std::abort();
}

}  // namespace fuzz
