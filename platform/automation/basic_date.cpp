// Conversion between a Date's serial number and its civil form.
#include "platform/automation/basic_date.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace automation {

namespace {

// Days since 1970-01-01 of a proleptic Gregorian date.
constexpr int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

// Serial day 0 is 1899-12-30.
constexpr int64_t kBaseDay = DaysFromCivil(1899, 12, 30);

bool ReadDate(const std::string& s, double* days) {
    int y = 0, m = 0, d = 0, used = 0;
    if (std::sscanf(s.c_str(), "%4d-%2d-%2d%n", &y, &m, &d, &used) != 3 || used != static_cast<int>(s.size()))
        return false;
    if (m < 1 || m > 12 || d < 1 || d > 31) return false;
    const int64_t serialDay = SerialDayOf(y, static_cast<unsigned>(m), static_cast<unsigned>(d));
    if (CivilDateOf(serialDay).month != static_cast<unsigned>(m)) return false;  // 2023-02-30 and the like
    *days = static_cast<double>(serialDay);
    return true;
}

bool ReadTime(const std::string& s, double* fraction) {
    int h = 0, mi = 0, sec = 0, used = 0;
    const int n = std::sscanf(s.c_str(), "%2d:%2d%n:%2d%n", &h, &mi, &used, &sec, &used);
    if (n < 2 || used != static_cast<int>(s.size())) return false;
    if (h > 23 || mi > 59 || sec > 59 || h < 0 || mi < 0 || sec < 0) return false;
    *fraction = (h * 3600 + mi * 60 + sec) / 86400.0;
    return true;
}

}  // namespace

int64_t SerialDayOf(int64_t year, unsigned month, unsigned day) { return DaysFromCivil(year, month, day) - kBaseDay; }

CivilDate CivilDateOf(int64_t serialDay) {
    const int64_t z = serialDay + kBaseDay + 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const unsigned month = mp < 10 ? mp + 3 : mp - 9;
    return {static_cast<int64_t>(yoe) + era * 400 + (month <= 2), month, doy - (153 * mp + 2) / 5 + 1};
}

std::string FormatBasicDate(double serial) {
    // Negative serials count days back from the base, the fraction still
    // being the time forward from midnight.
    const double day = std::trunc(serial);
    const int64_t seconds = std::llround(std::fabs(serial - day) * 86400.0);
    const CivilDate civil = CivilDateOf(static_cast<int64_t>(day) + seconds / 86400);
    const int64_t s = seconds % 86400;
    char date[32], time[16];
    std::snprintf(date, sizeof date, "%04lld-%02u-%02u", static_cast<long long>(civil.year), civil.month, civil.day);
    std::snprintf(time, sizeof time, "%02d:%02d:%02d", static_cast<int>(s / 3600), static_cast<int>(s / 60 % 60),
                  static_cast<int>(s % 60));
    if (s == 0) return date;
    if (day == 0 && seconds < 86400) return time;
    return std::string(date) + " " + time;
}

bool ParseBasicDate(const std::string& text, double* serial) {
    const size_t sep = text.find_first_of(" T");
    double days = 0, fraction = 0;
    if (sep == std::string::npos) {
        if (ReadDate(text, &days) || ReadTime(text, &fraction)) {
            *serial = days + fraction;
            return true;
        }
        return false;
    }
    if (!ReadDate(text.substr(0, sep), &days) || !ReadTime(text.substr(sep + 1), &fraction)) return false;
    *serial = days >= 0 ? days + fraction : days - fraction;
    return true;
}

}  // namespace automation
