// The ODBC provider's text handling: which query texts an editable cursor
// takes as reading one table, how the table's key columns are put in front
// of the select list, and text between UTF-8 and the wide text of ODBC's
// calls at its edges (plain letters and signs go both ways in every
// contract case on the ODBC backends).
#ifdef KDVQ_HAVE_ODBC
#include "platform/ado/odbc/odbc_text.h"
#include "platform/ado/odbc/select_shape.h"

#include <gtest/gtest.h>

namespace ado::odbc {
namespace {

struct ShapeCase {
    const char* sql;
    const char* shape;  // "schema|table|qualifier|names" ("computes" when the list does), or "none"
    const char* keyed;  // with the leading column "K"
};

TEST(OdbcSelectShape, FindsTheOneTableAndAddsKeyColumns) {
    const std::vector<ShapeCase> cases = {
        {"SELECT ID, NAME FROM T", "|T|T|names", "SELECT K, ID, NAME FROM T"},
        {"select * from dbo.KD_X where A = 1", "dbo|KD_X|dbo.KD_X|names", "select K, dbo.KD_X.* from dbo.KD_X where A = 1"},
        {"SELECT t.NAME FROM T t ORDER BY t.ID", "|T|t|names", "SELECT K, t.NAME FROM T t ORDER BY t.ID"},
        {"SELECT * FROM T AS x;", "|T|x|names", "SELECT K, x.* FROM T AS x;"},
        {"SELECT \"A b\" FROM \"My Table\"", "|My Table|\"My Table\"|names", "SELECT K, \"A b\" FROM \"My Table\""},
        {"SELECT (SELECT MAX(ID) FROM U) M FROM T WHERE X IN (SELECT X FROM V)", "|T|T|computes",
         "SELECT K, (SELECT MAX(ID) FROM U) M FROM T WHERE X IN (SELECT X FROM V)"},
        {"SELECT *, NAME FROM T", "|T|T|names", "SELECT K, *, NAME FROM T"},
        {"SELECT t.ID AS I, NAME N FROM T t", "|T|t|names", "SELECT K, t.ID AS I, NAME N FROM T t"},
        {"SELECT NAME || 'x' AS NAME FROM T", "|T|T|computes", "SELECT K, NAME || 'x' AS NAME FROM T"},
        {"SELECT 1 AS X FROM T", "|T|T|computes", "SELECT K, 1 AS X FROM T"},
        {"SELECT DISTINCT NAME FROM T", "none", ""},
        {"SELECT TOP 5 NAME FROM T", "none", ""},
        {"SELECT A FROM T t, U u WHERE t.ID = u.ID", "none", ""},
        {"SELECT A FROM T JOIN U ON T.ID = U.ID", "none", ""},
        {"SELECT A, COUNT(*) FROM T GROUP BY A", "none", ""},
        {"SELECT A FROM T UNION SELECT A FROM U", "none", ""},
        {"SELECT A FROM (SELECT A FROM T) s", "none", ""},
        {"SELECT A FROM db.owner.T", "none", ""},
        {"SELECT A FROM T; DELETE FROM T", "none", ""},
        {"UPDATE T SET A = 1", "none", ""},
        {"SELECT 1", "none", ""},
    };
    for (const ShapeCase& c : cases) {
        SCOPED_TRACE(c.sql);
        std::optional<SelectShape> shape = ParseSelectShape(c.sql);
        EXPECT_EQ(shape ? shape->schema + "|" + shape->table + "|" + shape->qualifier + "|" +
                              (shape->listComputes ? "computes" : "names")
                        : "none",
                  c.shape);
        if (shape) {
            EXPECT_EQ(WithLeadingColumns(c.sql, *shape, {"K"}), c.keyed);
        }
    }
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
