// The ODBC provider's text handling: which query texts an editable cursor
// takes as reading one table, how the table's key columns are put in front
// of the select list, and text between UTF-8 and the wide text of ODBC's
// calls at its edges (plain letters and signs go both ways in every
// contract case on the ODBC backends).
#ifdef KDVQ_HAVE_ODBC
#include "platform/ado/odbc/odbc_text.h"
#include "platform/ado/odbc/select_shape.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/answer_file.h"

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

// Each case, "situation; UTF-8 bytes in hex", answers the units of the wide
// text it becomes and the bytes that wide text converts back to, in hex.
TEST(OdbcText, ConvertsBetweenUtf8AndWideText) {
    answer_file::ExpectAnswers("utf-8", [](const std::string& input) {
        std::string utf8, answer;
        for (const std::string& byte : answer_file::Split(input.substr(input.find("; ") + 2), " "))
            utf8 += static_cast<char>(std::stoi(byte, nullptr, 16));
        const WideText wide = ToWide(utf8);
        char hex[8];
        for (const auto unit : wide) {
            std::snprintf(hex, sizeof hex, "%04X ", unsigned(unit));
            answer += hex;
        }
        answer += ";";
        for (const unsigned char byte : FromWide(wide)) {
            std::snprintf(hex, sizeof hex, " %02X", unsigned(byte));
            answer += hex;
        }
        return answer;
    });
}

}  // namespace
}  // namespace ado::odbc
#endif  // KDVQ_HAVE_ODBC
