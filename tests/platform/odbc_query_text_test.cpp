// The ODBC provider's text handling: which query texts an editable cursor
// takes as reading one table, how the table's key columns are put in front
// of the select list, and text between UTF-8 and the wide text of ODBC's
// calls at its edges (plain letters and signs go both ways in every
// contract case on the ODBC backends).
#ifdef KDVQ_HAVE_ODBC
#include "platform/ado/odbc/odbc_text.h"
#include "platform/ado/odbc/select_shape.h"

#include <gtest/gtest.h>

#include "tests/platform/answer_file.h"

namespace ado::odbc {
namespace {

// Each case answers "schema|table|qualifier|names" ("computes" when the
// list does) and the text with the leading key column "K", or "none".
TEST(OdbcSelectShape, FindsTheOneTableAndAddsKeyColumns) {
    answer_file::ExpectAnswers("select shapes", [](const std::string& sql) {
        std::optional<SelectShape> shape = ParseSelectShape(sql);
        if (!shape) return std::string("none");
        return shape->schema + "|" + shape->table + "|" + shape->qualifier + "|" +
               (shape->listComputes ? "computes" : "names") + "; " + WithLeadingColumns(sql, *shape, {"K"});
    });
}

struct TextCase {
    const char* situation;
    std::string utf8;
    WideText wide;
    std::string back;  // FromWide(wide)
};

TEST(OdbcText, ConvertsBetweenUtf8AndWideText) {
    const std::string replacement = "\xEF\xBF\xBD";
    const std::vector<TextCase> cases = {
        {"beyond 16 bits: a surrogate pair", "\xF0\x9F\x98\x80", {0xD83D, 0xDE00}, "\xF0\x9F\x98\x80"},
        {"invalid byte", "a\xFF", {'a', 0xFFFD}, "a" + replacement},
        {"sequence cut short", "\xE2\x82", {0xFFFD, 0xFFFD}, replacement + replacement},
        {"overlong form", "\xC0\xAF", {0xFFFD, 0xFFFD}, replacement + replacement},
        {"surrogate written in UTF-8", "\xED\xA0\x80", {0xFFFD, 0xFFFD, 0xFFFD}, replacement + replacement + replacement},
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
