// The host's string table: its file format, the substitution of values,
// and the markers of the shipped English table.
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/resource_files.h"
#include "host/string_table.h"
#include "tests/support/answer_file.h"

namespace kdhost::testing {
namespace {

// The cases are in transcripts/string_table_test/substitution.txt, one a
// line: the text, then its values each after " | ".
TEST(StringSubstitution, PutsTheValuesInForTheMarkers) {
    answer_file::ExpectAnswers("substitution", [](const std::string& input) {
        std::vector<std::string> values = answer_file::Split(input, " | ");
        const std::string text = values.front();
        values.erase(values.begin());
        return StringTable::Substitute(text, values);
    });
}

struct ParseErrorCase {
    std::string name;
    std::string text;
    std::string message;
};

void PrintTo(const ParseErrorCase& value, std::ostream* out) { *out << value.name; }

class StringTableErrors : public ::testing::TestWithParam<ParseErrorCase> {};

TEST_P(StringTableErrors, NameTheFileAndLine) {
    try {
        StringTable::Parse(GetParam().text, "strings.txt");
        FAIL() << "no error";
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, StringTableErrors,
    ::testing::Values(
        ParseErrorCase{"NoTab", "# c\n101 Updating", "strings.txt:2: expected a number, a tab and the text"},
        ParseErrorCase{"NotANumber", "10a\tx", "strings.txt:1: expected a number, a tab and the text"},
        ParseErrorCase{"GivenTwice", "102\tDone.\r\n102\tDone again.",
                       "strings.txt:2: string 102 is given twice"}),
    [](const ::testing::TestParamInfo<ParseErrorCase>& info) { return info.param.name; });

TEST(StringTableFormat, SkipsCommentsAndKeepsTextAsWritten) {
    StringTable table = StringTable::Parse("# comment\n\n501\tCreating table %1 \n606\t\\t%1 and %3\n", "t");
    EXPECT_EQ(table.Entries().size(), 2u);
    EXPECT_EQ(table.Find(501), "Creating table %1 ");
    EXPECT_EQ(table.Find(606), "\t%1 and %3");
    EXPECT_EQ(table.Find(999), std::nullopt);
}

// A value marker without the ones before it is a typing error in the
// shipped table: the caller would pass a value that is never shown.
TEST(ShippedStringTable, NumbersItsMarkersFromOne) {
    StringTable table = StringTable::Load(FindResourceFile("strings.en.txt"));
    ASSERT_TRUE(table.Find(102).has_value());
    std::regex marker("%([0-9]+)");
    for (const auto& [id, text] : table.Entries()) {
        std::set<size_t> markers;
        for (std::sregex_iterator m(text.begin(), text.end(), marker), end; m != end; ++m) {
            markers.insert(std::stoul((*m)[1]));
        }
        EXPECT_TRUE(markers.empty() || (*markers.begin() == 1 && *markers.rbegin() == markers.size()))
            << "string " << id << ": " << text;
    }
}

}  // namespace
}  // namespace kdhost::testing
