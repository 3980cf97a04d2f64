#include "host/text_lines.h"

namespace kdhost {

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines(1);
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\r' || c == '\n') {
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    return lines;
}

std::string TrimRight(std::string text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.pop_back();
    return text;
}

}  // namespace kdhost
