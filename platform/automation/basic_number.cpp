// Basic's number rules: banker's rounding, parsing of numeric text and the
// text form CStr gives a Double.
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/automation/variant.h"

namespace automation {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// "&H" hex and "&O" octal literals: up to 4 digits are a 16-bit value and up
// to 8 (hex) or 11 (octal) a 32-bit one, both in two's complement, so
// "&HFFFF" is -1 as in Basic source.
bool ParseRadixLiteral(const std::string& s, double* out) {
    if (s.size() < 3 || s[0] != '&') return false;
    const char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(s[1])));
    const int radix = kind == 'H' ? 16 : kind == 'O' ? 8 : 0;
    if (radix == 0) return false;
    const std::string digits = s.substr(2);
    const size_t maxDigits = radix == 16 ? 8 : 11;
    if (digits.empty() || digits.size() > maxDigits) return false;
    uint64_t value = 0;
    for (char c : digits) {
        const int d = std::isdigit(static_cast<unsigned char>(c))   ? c - '0'
                      : std::isxdigit(static_cast<unsigned char>(c)) ? std::toupper(static_cast<unsigned char>(c)) - 'A' + 10
                                                                     : radix;
        if (d >= radix) return false;
        value = value * static_cast<uint64_t>(radix) + static_cast<uint64_t>(d);
    }
    if (value > 0xFFFFFFFFull) return false;
    if (value <= 0xFFFF && digits.size() <= 4) {
        *out = static_cast<int16_t>(static_cast<uint16_t>(value));
    } else {
        *out = static_cast<int32_t>(static_cast<uint32_t>(value));
    }
    return true;
}

// [sign] digits [. digits] [(E|D) [sign] digits], at least one mantissa digit.
bool IsDecimalLiteral(const std::string& s) {
    size_t i = 0;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
    size_t mantissaDigits = 0;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++mantissaDigits;
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++mantissaDigits;
    }
    if (mantissaDigits == 0) return false;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        ++i;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
        size_t exponentDigits = 0;
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++exponentDigits;
        if (exponentDigits == 0) return false;
    }
    return i == s.size();
}

}  // namespace

double RoundHalfEven(double v) {
    if (!std::isfinite(v)) return v;
    const double floor = std::floor(v);
    const double diff = v - floor;
    if (diff < 0.5) return floor;
    if (diff > 0.5) return floor + 1;
    return std::fmod(floor, 2.0) == 0 ? floor : floor + 1;
}

bool ParseBasicNumber(const std::string& text, double* out) {
    size_t begin = 0, end = text.size();
    while (begin < end && IsBlank(text[begin])) ++begin;
    while (end > begin && IsBlank(text[end - 1])) --end;
    std::string s = text.substr(begin, end - begin);
    double value = 0;
    if (ParseRadixLiteral(s, &value)) {
        *out = value;
        return true;
    }
    if (!IsDecimalLiteral(s)) return false;
    for (char& c : s) {
        if (c == 'd' || c == 'D') c = 'E';  // Basic's double-precision exponent letter
    }
    value = std::strtod(s.c_str(), nullptr);
    if (!std::isfinite(value)) return false;
    *out = value;
    return true;
}

std::string FormatBasicDouble(double v) {
    if (v == 0) return "0";  // also for negative zero
    // Fifteen significant digits, the precision Basic prints a Double with.
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15G", v);
    return buf;
}

}  // namespace automation
