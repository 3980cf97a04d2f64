#pragma once
// Text between the library (UTF-8) and ODBC's wide calls (UTF-16 in
// SQLWCHAR units). The provider uses the wide calls throughout so that no
// driver or driver manager converts text through the process's locale.
#include <sql.h>
#include <sqlext.h>

#include <string>

namespace ado::odbc {

static_assert(sizeof(SQLWCHAR) == 2, "the driver manager is expected to use UTF-16 wide text");
using WideText = std::basic_string<SQLWCHAR>;

// Invalid UTF-8 bytes become U+FFFD.
WideText ToWide(const std::string& utf8);
// Unpaired surrogates become U+FFFD.
std::string FromWide(const SQLWCHAR* text, size_t length);
inline std::string FromWide(const WideText& text) { return FromWide(text.data(), text.size()); }

// The text up to the first zero unit of a buffer of capacity units.
std::string FromWideBuffer(const SQLWCHAR* buffer, size_t capacity);

}  // namespace ado::odbc
