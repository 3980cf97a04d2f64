#pragma once
// Comparing names the way Basic's text compare does for identifiers: ASCII
// letters match whatever their case, everything else byte for byte.
#include <cctype>
#include <string>

namespace automation {

inline bool SameTextIgnoringCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

// Whether part occurs in text, compared as above.
inline bool ContainsTextIgnoringCase(const std::string& text, const std::string& part) {
    for (size_t at = 0; at + part.size() <= text.size(); ++at)
        if (SameTextIgnoringCase(text.substr(at, part.size()), part)) return true;
    return false;
}

}  // namespace automation
