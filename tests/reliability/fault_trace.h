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

// The number of the first call of that kind (and text, unless empty) from
// call number `from` on; 0 when there is none.
long FindCall(const std::vector<TracedCall>& calls, const std::string& kind, const std::string& text, long from = 1);

}  // namespace kdhost::testing
