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

// Whether shorter is longer with one run of characters cut out of it
// (anywhere, possibly nothing).
inline bool IsCutFrom(const std::string& shorter, const std::string& longer) {
    if (shorter.size() > longer.size()) return false;
    size_t prefix = 0;
    while (prefix < shorter.size() && shorter[prefix] == longer[prefix]) ++prefix;
    size_t suffix = 0;
    while (suffix < shorter.size() - prefix &&
           shorter[shorter.size() - 1 - suffix] == longer[longer.size() - 1 - suffix])
        ++suffix;
    return prefix + suffix == shorter.size();
}

}  // namespace fuzz
