#pragma once
// Large sample repositories: the 8.2 sample grown to the size of a busy
// live repository, for measuring how the upgrade copes with volume. Every
// count is the size at scale 1 multiplied by the scale (rounded, at least
// one), so a fractional scale gives a quick small run.
#include <cstdint>
#include <string>

namespace kdhost {

// The rows added to the sample, by kind.
struct SampleScaleCounts {
    int64_t states = 0;
    int64_t transitions = 0;  // each with one source and 1 to 3 target states
    int64_t roles = 0;        // each attached to states, a filter, tasks and transitions
    int64_t filters = 0;
    int64_t tasks = 0;
    int64_t subtasks = 0;
    int64_t users = 0;
    int64_t historyRows = 0;
    int64_t sessions = 0;
    int64_t sessionModifications = 0;
    int64_t designs = 0;      // most with a mobile packet id

    int64_t Total() const;
};

// The release 9.0.2 upgrade numbers subtasks with a 16-bit counter, so a
// sample holds fewer subtasks than that in all.
constexpr int64_t kMaxSampleSubtasks = 30000;

SampleScaleCounts ScaledCounts(double scale);

// Adds the scaled rows to an existing 8.2 sample file, in one transaction
// with prepared statements; ids continue after the sample's own. Raises
// BadInput for a scale that is not positive and finite, or when the file
// cannot be written.
void ScaleSampleRepository(const std::string& path, double scale);

// Creates the sample of the release in a new file and grows it by the
// scale. Only the 8.2 sample can be grown (the rows have its shapes):
// raises BadInput for another release, and removes a half-made file.
void CreateScaledSample(const std::string& release, const std::string& path, double scale);

}  // namespace kdhost
