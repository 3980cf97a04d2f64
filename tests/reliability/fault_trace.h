#pragma once
// The calls the runner's fault hook traced: one per statement, query, row
// write and commit, in the order the runner sent them.
#include <string>
#include <vector>

namespace kdhost::testing {

struct TracedCall {
    long number = 0;
    std::string kind;  // "statement", "query", "row insert", "row update", "commit", "upgrader commit"
    std::string text;
    bool injected = false;
};

std::vector<TracedCall> ReadTrace(const std::string& path);

}  // namespace kdhost::testing
