#pragma once
// Dates as text: the forms criteria and databases write them in, converted
// to and from automation's date serial (days since 1899-12-30, the fraction
// being the time of day).
#include <string>

namespace ado {

// Accepts "YYYY-MM-DD", "M/D/YYYY" (US order, as criteria literals are
// written), each optionally followed by a blank or "T" and "H:MM[:SS]" with
// an optional AM/PM. Returns false when the text is no such date.
bool ParseDateText(const std::string& text, double* serial);

// "YYYY-MM-DD HH:MM:SS", the form SQL engines read back as a date.
std::string FormatDateText(double serial);

}  // namespace ado
