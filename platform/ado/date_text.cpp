#include "platform/ado/date_text.h"

#include <cctype>
#include <cmath>
#include <cstdio>

namespace ado {
namespace {

// Days from 1970-01-01 to a proleptic Gregorian date.
long DaysFromCivil(long y, unsigned m, unsigned d) {
    y -= m <= 2;
    const long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long>(doe) - 719468;
}

void CivilFromDays(long z, long* y, unsigned* m, unsigned* d) {
    z += 719468;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    *d = doy - (153 * mp + 2) / 5 + 1;
    *m = mp < 10 ? mp + 3 : mp - 9;
    *y = static_cast<long>(yoe) + era * 400 + (*m <= 2);
}

const long kSerialEpoch = DaysFromCivil(1899, 12, 30);

unsigned DaysInMonth(long y, unsigned m) {
    static const unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
    return m == 2 && leap ? 29 : kDays[m - 1];
}

// Reads 1 to maxDigits decimal digits.
bool ReadNumber(const std::string& s, size_t& i, int maxDigits, long* out) {
    long v = 0;
    int n = 0;
    while (i < s.size() && n < maxDigits && std::isdigit(static_cast<unsigned char>(s[i]))) {
        v = v * 10 + (s[i] - '0');
        ++i;
        ++n;
    }
    *out = v;
    return n > 0;
}

bool Expect(const std::string& s, size_t& i, char c) {
    if (i < s.size() && s[i] == c) {
        ++i;
        return true;
    }
    return false;
}

void SkipBlanks(const std::string& s, size_t& i) {
    while (i < s.size() && s[i] == ' ') ++i;
}

bool ReadDatePart(const std::string& s, size_t& i, long* y, long* m, long* d) {
    size_t start = i;
    long first = 0;
    if (!ReadNumber(s, i, 4, &first)) return false;
    if (i - start == 4) {  // YYYY-MM-DD
        *y = first;
        return Expect(s, i, '-') && ReadNumber(s, i, 2, m) && Expect(s, i, '-') && ReadNumber(s, i, 2, d);
    }
    *m = first;  // M/D/YYYY
    return Expect(s, i, '/') && ReadNumber(s, i, 2, d) && Expect(s, i, '/') && ReadNumber(s, i, 4, y);
}

// "H:MM[:SS][ AM|PM]"; the seconds of the day in *seconds.
bool ReadTimePart(const std::string& s, size_t& i, long* seconds) {
    long h = 0, mi = 0, sec = 0;
    if (!ReadNumber(s, i, 2, &h) || !Expect(s, i, ':') || !ReadNumber(s, i, 2, &mi)) return false;
    if (Expect(s, i, ':') && !ReadNumber(s, i, 2, &sec)) return false;
    SkipBlanks(s, i);
    if (i + 1 < s.size() && std::toupper(static_cast<unsigned char>(s[i + 1])) == 'M') {
        char half = static_cast<char>(std::toupper(static_cast<unsigned char>(s[i])));
        if ((half != 'A' && half != 'P') || h < 1 || h > 12) return false;
        h = h % 12 + (half == 'P' ? 12 : 0);
        i += 2;
    }
    if (h > 23 || mi > 59 || sec > 59) return false;
    *seconds = h * 3600 + mi * 60 + sec;
    return true;
}

}  // namespace

bool ParseDateText(const std::string& text, double* serial) {
    size_t i = 0;
    SkipBlanks(text, i);
    long y = 0, m = 0, d = 0, seconds = 0;
    if (!ReadDatePart(text, i, &y, &m, &d)) return false;
    if (y < 100 || m < 1 || m > 12 || d < 1 || d > static_cast<long>(DaysInMonth(y, static_cast<unsigned>(m))))
        return false;
    if (i < text.size() && (text[i] == ' ' || text[i] == 'T')) {
        ++i;
        SkipBlanks(text, i);
        if (i < text.size() && !ReadTimePart(text, i, &seconds)) return false;
    }
    SkipBlanks(text, i);
    if (i != text.size()) return false;
    long days = DaysFromCivil(y, static_cast<unsigned>(m), static_cast<unsigned>(d)) - kSerialEpoch;
    double fraction = seconds / 86400.0;
    // Before the epoch the time of day still counts forward from midnight.
    *serial = days >= 0 ? days + fraction : days - fraction;
    return true;
}

std::string FormatDateText(double serial) {
    if (!std::isfinite(serial) || std::fabs(serial) > 3e6) serial = 0;
    double whole = std::trunc(serial);
    long seconds = std::lround(std::fabs(serial - whole) * 86400.0);
    long days = static_cast<long>(whole);
    if (seconds >= 86400) {  // rounding reached the next midnight
        seconds -= 86400;
        days += serial >= 0 ? 1 : -1;
    }
    long y = 0;
    unsigned m = 0, d = 0;
    CivilFromDays(days + kSerialEpoch, &y, &m, &d);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04ld-%02u-%02u %02ld:%02ld:%02ld", y, m, d, seconds / 3600,
                  seconds / 60 % 60, seconds % 60);
    return buffer;
}

}  // namespace ado
