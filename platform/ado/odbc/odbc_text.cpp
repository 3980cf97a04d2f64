#include "platform/ado/odbc/odbc_text.h"

#include <cstdint>

namespace ado::odbc {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Decodes one code point at text[i], advancing i; malformed input yields
// U+FFFD and consumes one byte.
char32_t DecodeUtf8(const std::string& text, size_t& i) {
    const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
    unsigned char lead = byte(i);
    size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
    if (length == 0 || i + length > text.size()) {
        ++i;
        return kReplacement;
    }
    char32_t code = length == 1 ? lead : lead & (0xFF >> (length + 1));
    for (size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) {
            ++i;
            return kReplacement;
        }
        code = (code << 6) | (byte(i + k) & 0x3F);
    }
    static const char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    bool valid = code >= kSmallest[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    i += valid ? length : 1;
    return valid ? code : kReplacement;
}

void AppendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

}  // namespace

WideText ToWide(const std::string& utf8) {
    WideText out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        char32_t code = DecodeUtf8(utf8, i);
        if (code >= 0x10000) {
            code -= 0x10000;
            out += static_cast<SQLWCHAR>(0xD800 | (code >> 10));
            out += static_cast<SQLWCHAR>(0xDC00 | (code & 0x3FF));
        } else {
            out += static_cast<SQLWCHAR>(code);
        }
    }
    return out;
}

std::string FromWide(const SQLWCHAR* text, size_t length) {
    std::string out;
    out.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        char32_t unit = text[i];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < length && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            AppendUtf8(out, unit >= 0xD800 && unit <= 0xDFFF ? kReplacement : unit);
        }
    }
    return out;
}

std::string FromWideBuffer(const SQLWCHAR* buffer, size_t capacity) {
    size_t length = 0;
    while (length < capacity && buffer[length] != 0) ++length;
    return FromWide(buffer, length);
}

}  // namespace ado::odbc
