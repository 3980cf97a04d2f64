#pragma once
// A failure that reaches the host from an upgrader carries one tag per
// routine it passed through ("Class::Member", outermost first), each on a
// line of its own, and then the reason itself (the database's message, a
// line number). Reports show the two apart.
#include <string>
#include <vector>

namespace kdhost {

struct FailureDescription {
    std::vector<std::string> tags;  // outermost first
    std::string reason;             // the lines after the tags, joined with LF
};

FailureDescription SplitFailureDescription(const std::string& description);

}  // namespace kdhost
