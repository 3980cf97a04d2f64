// Text between UTF-8 and the wide text of ODBC's calls, malformed input
// included.
#ifdef KDVQ_HAVE_ODBC
#include "platform/ado/odbc/odbc_text.h"

#include <gtest/gtest.h>

namespace ado::odbc {
namespace {

struct TextCase {
    const char* situation;
    std::string utf8;
    WideText wide;
    std::string back;  // FromWide(wide)
};

TEST(OdbcText, ConvertsBetweenUtf8AndWideText) {
    const std::string replacement = "\xEF\xBF\xBD";
    const std::vector<TextCase> cases = {
        {"ascii", "abc", {'a', 'b', 'c'}, "abc"},
        {"two-byte letters", "Grüße", {'G', 'r', 0xFC, 0xDF, 'e'}, "Grüße"},
        {"three-byte sign", "€", {0x20AC}, "€"},
        {"beyond 16 bits: a surrogate pair", "\xF0\x9F\x98\x80", {0xD83D, 0xDE00}, "\xF0\x9F\x98\x80"},
        {"invalid byte", "a\xFF", {'a', 0xFFFD}, "a" + replacement},
        {"sequence cut short", "\xE2\x82", {0xFFFD, 0xFFFD}, replacement + replacement},
        {"overlong form", "\xC0\xAF", {0xFFFD, 0xFFFD}, replacement + replacement},
        {"surrogate written in UTF-8", "\xED\xA0\x80", {0xFFFD, 0xFFFD, 0xFFFD}, replacement + replacement + replacement},
        {"empty", "", {}, ""},
    };
    for (const TextCase& c : cases) {
        SCOPED_TRACE(c.situation);
        EXPECT_EQ(ToWide(c.utf8), c.wide);
        EXPECT_EQ(FromWide(c.wide), c.back);
    }
}

}  // namespace
}  // namespace ado::odbc
#endif  // KDVQ_HAVE_ODBC
