#include "host/failure_description.h"

#include <cctype>

#include "host/text_lines.h"

namespace kdhost {

namespace {

bool IsNamePart(const std::string& text) {
    if (text.empty()) return false;
    for (char c : text) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
    }
    return true;
}

// "KDVqUpgrader830::UpgradeOracle": two names joined by "::", nothing else.
bool IsTag(const std::string& line) {
    size_t colons = line.find("::");
    return colons != std::string::npos && IsNamePart(line.substr(0, colons)) &&
           IsNamePart(line.substr(colons + 2));
}

}  // namespace

FailureDescription SplitFailureDescription(const std::string& description) {
    FailureDescription parts;
    std::vector<std::string> lines = SplitLines(description);
    size_t i = 0;
    for (; i < lines.size() && IsTag(lines[i]); ++i) parts.tags.push_back(lines[i]);
    for (size_t j = i; j < lines.size(); ++j) parts.reason += (j == i ? "" : "\n") + lines[j];
    return parts;
}

}  // namespace kdhost
