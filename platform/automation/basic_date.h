#pragma once
// Text forms of a Date (days since 1899-12-30, fraction = time of day),
// independent of any locale: "2024-03-01", "13:45:00" or both.
#include <cstdint>
#include <string>

namespace automation {

struct CivilDate {
    int64_t year;
    unsigned month;  // 1..12
    unsigned day;    // 1..31
};

// The serial day (days since 1899-12-30) of a proleptic Gregorian date, and
// back; valid for any day, also before the base date.
int64_t SerialDayOf(int64_t year, unsigned month, unsigned day);
CivilDate CivilDateOf(int64_t serialDay);

// The date alone when the time is midnight, the time alone when the day is
// the base date, otherwise "yyyy-mm-dd hh:mm:ss".
std::string FormatBasicDate(double serial);
// Reads "yyyy-mm-dd", "hh:mm[:ss]" or the two joined by a blank or "T".
bool ParseBasicDate(const std::string& text, double* serial);

}  // namespace automation
