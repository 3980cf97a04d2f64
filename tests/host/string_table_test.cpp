// The host's string table: its file format, the substitution of values,
// and the shipped English table, which must hold every number the
// upgraders ask for with exactly the markers for the values they pass.
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/resource_files.h"
#include "host/string_table.h"

namespace kdhost::testing {
namespace {

struct SubstituteCase {
    std::string name;
    std::string text;
    std::vector<std::string> values;
    std::string expected;
};

void PrintTo(const SubstituteCase& value, std::ostream* out) { *out << value.name; }

class StringSubstitution : public ::testing::TestWithParam<SubstituteCase> {};

TEST_P(StringSubstitution, PutsTheValuesInForTheMarkers) {
    EXPECT_EQ(StringTable::Substitute(GetParam().text, GetParam().values), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, StringSubstitution,
    ::testing::Values(
        SubstituteCase{"InOrder", "Adding column %1 to table %2", {"HIDDEN", "KD_WMS_DESIGN"},
                       "Adding column HIDDEN to table KD_WMS_DESIGN"},
        SubstituteCase{"OutOfOrderAndRepeated", "%2 (%1), %2", {"a", "b"}, "b (a), b"},
        SubstituteCase{"MissingValueIsEmpty", "Creating table %1.", {}, "Creating table ."},
        SubstituteCase{"PercentSign", "100%% done", {}, "100% done"},
        SubstituteCase{"LonePercentSigns", "% and %x and %", {"v"}, "% and %x and %"},
        SubstituteCase{"TwoDigitMarker", "%10|%1", {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}, "j|a"},
        SubstituteCase{"HugeMarker", "%99999999999999999999999", {"a"}, ""},
        SubstituteCase{"ValueWithMarkerIsNotExpandedAgain", "%1", {"%1"}, "%1"}),
    [](const ::testing::TestParamInfo<SubstituteCase>& info) { return info.param.name; });

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

// Every string number the upgraders ask for, with the number of values
// they pass.
struct UsedString {
    int32_t id;
    size_t values;
};

std::vector<UsedString> UsedStrings() {
    std::vector<UsedString> used = {{101, 1}, {102, 0}, {103, 0}, {501, 1}, {502, 2}, {503, 0}, {504, 1},
                                    {505, 2}, {506, 1}, {507, 1}, {508, 1}, {509, 2}, {510, 2}, {511, 1},
                                    {512, 2}, {602, 0}, {603, 0}, {604, 1}, {605, 1}, {606, 4}, {607, 0},
                                    {608, 1}, {609, 0}, {610, 1}, {611, 1}, {612, 1}};
    // Names and descriptions; 222 (a name) has no description string, and
    // 267 (a description) takes the text that separates its paragraphs.
    for (int32_t id : {201, 202, 211, 212, 222, 223, 224}) used.push_back({id, 0});
    for (int32_t id = 231; id <= 302; ++id) {
        bool unused = id == 287 || id == 288 || (id > 232 && id < 241) || (id > 242 && id < 251);
        if (!unused) used.push_back({id, id == 267 ? 1u : 0u});
    }
    return used;
}

TEST(ShippedStringTable, HoldsEveryStringWithTheMarkersForItsValues) {
    StringTable table = StringTable::Load(FindResourceFile("strings.en.txt"));
    std::regex marker("%([0-9]+)");
    for (const UsedString& used : UsedStrings()) {
        std::optional<std::string> text = table.Find(used.id);
        ASSERT_TRUE(text.has_value()) << "string " << used.id;
        std::set<size_t> markers;
        for (std::sregex_iterator m(text->begin(), text->end(), marker), end; m != end; ++m) {
            markers.insert(std::stoul((*m)[1]));
        }
        std::set<size_t> expected;
        for (size_t n = 1; n <= used.values; ++n) expected.insert(n);
        EXPECT_EQ(markers, expected) << "string " << used.id << ": " << *text;
    }
    EXPECT_EQ(table.Entries().size(), UsedStrings().size());
}

}  // namespace
}  // namespace kdhost::testing
