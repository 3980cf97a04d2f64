// Class and interface identifiers: the registry's braced text form.
#include "platform/com/guid.h"

#include <cstdio>
#include <stdexcept>
#include <tuple>

namespace com {

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads count hex digits at text[pos]; false when any is not a hex digit.
bool ReadHex(const std::string& text, size_t pos, size_t count, uint64_t* out) {
    uint64_t value = 0;
    for (size_t i = 0; i < count; ++i) {
        int d = HexDigit(text[pos + i]);
        if (d < 0) return false;
        value = value * 16 + static_cast<uint64_t>(d);
    }
    *out = value;
    return true;
}

}  // namespace

bool GUID::operator<(const GUID& o) const {
    return std::tie(data1, data2, data3, data4) < std::tie(o.data1, o.data2, o.data3, o.data4);
}

std::optional<GUID> ParseGuid(const std::string& text) {
    // {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}: 38 characters.
    if (text.size() != 38 || text.front() != '{' || text.back() != '}') return std::nullopt;
    for (size_t dash : {9u, 14u, 19u, 24u}) {
        if (text[dash] != '-') return std::nullopt;
    }
    GUID g;
    uint64_t v = 0;
    if (!ReadHex(text, 1, 8, &v)) return std::nullopt;
    g.data1 = static_cast<uint32_t>(v);
    if (!ReadHex(text, 10, 4, &v)) return std::nullopt;
    g.data2 = static_cast<uint16_t>(v);
    if (!ReadHex(text, 15, 4, &v)) return std::nullopt;
    g.data3 = static_cast<uint16_t>(v);
    // The last two groups are the eight bytes of data4, in order.
    const size_t bytePos[8] = {20, 22, 25, 27, 29, 31, 33, 35};
    for (size_t i = 0; i < 8; ++i) {
        if (!ReadHex(text, bytePos[i], 2, &v)) return std::nullopt;
        g.data4[i] = static_cast<uint8_t>(v);
    }
    return g;
}

GUID MakeGuid(const char* text) {
    auto g = ParseGuid(text ? text : "");
    if (!g) throw std::invalid_argument(std::string("malformed identifier: ") + (text ? text : "(null)"));
    return *g;
}

std::string FormatGuid(const GUID& g) {
    char buf[39];
    std::snprintf(buf, sizeof buf, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", g.data1, g.data2, g.data3,
                  g.data4[0], g.data4[1], g.data4[2], g.data4[3], g.data4[4], g.data4[5], g.data4[6], g.data4[7]);
    return buf;
}

}  // namespace com
