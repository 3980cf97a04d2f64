#pragma once
// Recovering the values bound to a prepared statement from the engine's
// expanded text of it. The expanded text is the statement's text with each
// parameter mark replaced by the bound value written as an SQL literal
// (NULL, an integer, a real, a quoted text with doubled quotes, or a
// hexadecimal blob), so walking the two texts side by side gives the
// values back in parameter order.
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace bench {

struct Blob {
    std::string bytes;
    bool operator==(const Blob& other) const { return bytes == other.bytes; }
};

using BoundValue = std::variant<std::nullptr_t, int64_t, double, std::string, Blob>;

namespace detail {

inline bool IsQuote(char c) { return c == '\'' || c == '"' || c == '`' || c == '['; }
inline char ClosingOf(char c) { return c == '[' ? ']' : c; }

// The end of the quoted part opened at text[at] (one past its closing
// quote); a doubled quote stays inside.
inline size_t QuotedEnd(const std::string& text, size_t at) {
    char close = ClosingOf(text[at]);
    size_t i = at + 1;
    while (i < text.size()) {
        if (text[i] == close) {
            if (close != ']' && i + 1 < text.size() && text[i + 1] == close) {
                i += 2;
                continue;
            }
            return i + 1;
        }
        ++i;
    }
    return std::string::npos;
}

inline int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads the literal at expanded[at]; advances at past it.
inline std::optional<BoundValue> ReadLiteral(const std::string& expanded, size_t& at) {
    if (expanded.compare(at, 4, "NULL") == 0) {
        at += 4;
        return BoundValue(nullptr);
    }
    if (expanded[at] == '\'') {
        size_t end = QuotedEnd(expanded, at);
        if (end == std::string::npos) return std::nullopt;
        std::string text;
        for (size_t i = at + 1; i + 1 < end; ++i) {
            text += expanded[i];
            if (expanded[i] == '\'') ++i;  // a doubled quote is one character
        }
        at = end;
        return BoundValue(text);
    }
    if ((expanded[at] == 'x' || expanded[at] == 'X') && at + 1 < expanded.size() && expanded[at + 1] == '\'') {
        size_t end = expanded.find('\'', at + 2);
        if (end == std::string::npos || (end - at - 2) % 2 != 0) return std::nullopt;
        Blob blob;
        for (size_t i = at + 2; i < end; i += 2) {
            int high = HexDigit(expanded[i]), low = HexDigit(expanded[i + 1]);
            if (high < 0 || low < 0) return std::nullopt;
            blob.bytes += static_cast<char>(high * 16 + low);
        }
        at = end + 1;
        return BoundValue(blob);
    }
    size_t end = at;
    bool real = false;
    while (end < expanded.size()) {
        char c = expanded[end];
        if (c == '.' || c == 'e' || c == 'E' || c == 'I' || c == 'n' || c == 'f')
            real = true;  // also "Inf" of an infinite real
        else if (!(c == '-' || c == '+' || (c >= '0' && c <= '9')))
            break;
        ++end;
    }
    if (end == at) return std::nullopt;
    std::string number = expanded.substr(at, end - at);
    at = end;
    if (real) return BoundValue(std::strtod(number.c_str(), nullptr));
    return BoundValue(static_cast<int64_t>(std::strtoll(number.c_str(), nullptr, 10)));
}

}  // namespace detail

// The values bound to the marks ("?") of statementText, read from its
// expanded text; nullopt when the two texts do not match up.
inline std::optional<std::vector<BoundValue>> ExtractBoundValues(const std::string& statementText,
                                                                 const std::string& expanded) {
    std::vector<BoundValue> values;
    size_t i = 0, j = 0;
    while (i < statementText.size()) {
        char c = statementText[i];
        if (detail::IsQuote(c)) {
            // Quoted parts are copied unchanged, marks inside them included.
            size_t end = detail::QuotedEnd(statementText, i);
            if (end == std::string::npos) end = statementText.size();
            if (expanded.compare(j, end - i, statementText, i, end - i) != 0) return std::nullopt;
            j += end - i;
            i = end;
        } else if (c == '?') {
            if (j >= expanded.size()) return std::nullopt;
            std::optional<BoundValue> value = detail::ReadLiteral(expanded, j);
            if (!value) return std::nullopt;
            values.push_back(*value);
            ++i;
            while (i < statementText.size() && statementText[i] >= '0' && statementText[i] <= '9') ++i;
        } else {
            if (j >= expanded.size() || expanded[j] != c) return std::nullopt;
            ++i;
            ++j;
        }
    }
    if (j != expanded.size()) return std::nullopt;
    return values;
}

}  // namespace bench
