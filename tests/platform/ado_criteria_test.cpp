// The Find/Filter criteria language on single values: what each clause
// matches, and which texts are refused; and the column index that answers
// equality criteria for large recordsets.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/ado/column_index.h"
#include "platform/ado/criteria.h"
#include "tests/platform/ado_test_util.h"

namespace {

using automation::Variant;
using ado::criteria::Criteria;

bool Matches(const std::string& text, const Variant& value) {
    Criteria c = Criteria::Parse(text, false);
    c.Bind([](const std::string&) { return 0; });
    return c.Matches({value});
}

struct MatchCase {
    const char* criteria;
    Variant value;
    bool expected;
};

TEST(Criteria, MatchesFieldValues) {
    const std::vector<MatchCase> cases = {
        {"A=12", Variant::Long(12), true},
        {"A = 12", Variant(12.0), true},
        {"A=12", Variant::Integer(12), true},
        {"A=12", Variant("12"), true},          // the number as the text field sees it
        {"A=12", Variant("12.0"), false},
        {"A=-1", Variant::Boolean(true), true},
        {"A=1e1", Variant::Long(10), true},
        {"A=$5", Variant::Long(5), true},
        {"A<>12", Variant::Long(13), true},
        {"A<>12", Variant::Null(), false},      // Null matches no comparison
        {"A=NULL", Variant::Null(), true},
        {"A=null", Variant(), true},
        {"A<>NULL", Variant::Long(0), true},
        {"A<2.5", Variant(2.25), true},
        {"A>=2.5", Variant(2.5), true},
        {"A<=2", Variant(2.5), false},
        {"A>'abc'", Variant("ABD"), true},       // text compares without case
        {"A='7'", Variant::Long(7), true},       // text read as the number field's type
        {"A='seven'", Variant::Long(7), false},
        {"A=#WA#", Variant("wa"), true},         // #...# that is no date is text
        {"A=#1/31/2020#", Variant::Date(43861), true},
        {"A=#2020-01-31#", Variant("2020-01-31 00:00:00"), true},
        {"A>#2020-01-31#", Variant("2020-01-31 00:00:01"), true},
        {"A=#1/31/2020 1:30 PM#", Variant::Date(43861.5625), true},
        {"A LIKE 'ab*'", Variant("ABC"), true},
        {"A LIKE '%b%'", Variant("abc"), true},
        {"A like 'b*'", Variant("abc"), false},
        {"A LIKE '1*'", Variant::Long(12), true},
        {"A LIKE '*'", Variant::Null(), false},
        {"A=1 OR A=2 AND A=3", Variant::Long(1), true},  // AND binds tighter
        {"(A=1 OR A=2) AND A=3", Variant::Long(1), false},
        {"[A]=1", Variant::Long(1), true},
    };
    for (const MatchCase& c : cases)
        EXPECT_EQ(Matches(c.criteria, c.value), c.expected) << c.criteria << " with " << c.value.Describe();
}

TEST(Criteria, RefusesMalformedTextWith3001) {
    const std::vector<std::pair<const char*, bool>> cases = {
        {"", false},          {"A", false},        {"A=", false},         {"=1", false},          {"A==1", false},
        {"A=abc", false},     {"A='open", false},  {"A=#1/1/2020", false}, {"A=1 AND", false},    {"A=1 B=2", false},
        {"(A=1", false},      {"A=1)", false},     {"A<NULL", false},     {"[A=1", false},        {"A=1e999", false},
        {"A=1 AND B=2", true}, {"A=1 OR B=2", true}, {"(A=1)", true},  // Find takes one clause
    };
    for (const auto& [text, single] : cases)
        EXPECT_EQ(ado_test::ErrorOf([&, text = text, single = single] { Criteria::Parse(text, single); }),
                  ado::adErrInvalidArgument)
            << text;
    const std::string deep = std::string(100000, '(') + "A=1" + std::string(100000, ')');
    EXPECT_EQ(ado_test::ErrorOf([&] { Criteria::Parse(deep, false); }), ado::adErrInvalidArgument);
}

TEST(Criteria, WildcardBacktracking) {
    EXPECT_TRUE(ado::criteria::WildcardMatch("abcabcabd", "*abd"));
    EXPECT_TRUE(ado::criteria::WildcardMatch("", "*"));
    EXPECT_FALSE(ado::criteria::WildcardMatch(std::string(5000, 'a'), std::string(50, '*') + "b"));
}

// Values that share keys in several ways: equal numbers of different types,
// a number and its text, texts differing in case, fractions, Null.
std::vector<Variant> ValuePool() {
    return {Variant::Long(7), Variant(7.0),  Variant("7"),  Variant::Long(-3), Variant(2.5),
            Variant("abc"),   Variant("ABC"), Variant::Null(), Variant::Long(0), Variant(1e300)};
}

std::vector<int32_t> ScanFor(const Criteria& c, const std::vector<ado::ColumnIndex::Row>& rows) {
    std::vector<int32_t> out;
    for (size_t p = 0; p < rows.size(); ++p)
        if (c.Matches(rows[p])) out.push_back(static_cast<int32_t>(p));
    return out;
}

std::vector<int32_t> IndexFor(const Criteria& c, const ado::ColumnIndex& index) {
    std::vector<int32_t> out;
    for (const ado::criteria::MatchKey& key : c.Clauses()[0].keys)
        if (const ado::PositionList* found = index.Find(key)) out.insert(out.end(), found->begin(), found->end());
    std::sort(out.begin(), out.end());
    return out;
}

// The index must find exactly the rows a scan matches while rows are added
// and rewritten: a key moves between keys held by one row (kept inline) and
// keys held by several.
TEST(ColumnIndex, FindsWhatAScanMatchesThroughAppendsAndRewrites) {
    const std::vector<Variant> pool = ValuePool();
    const std::vector<std::string> literals = {"A=7", "A='7'", "A=-3", "A=2.5", "A='abc'", "A=0", "A=1E300", "A=8"};
    std::mt19937 random(20261122);
    std::vector<ado::ColumnIndex::Row> rows = {{pool[0]}, {pool[1]}};
    ado::ColumnIndex index(rows, 0, false);
    for (int step = 0; step < 400; ++step) {
        const Variant& value = pool[random() % pool.size()];
        if (random() % 3 == 0 || rows.empty()) {
            rows.push_back({value});
            index.Append(static_cast<int32_t>(rows.size() - 1), value);
        } else {
            size_t at = random() % rows.size();
            index.Replace(static_cast<int32_t>(at), rows[at][0], value);
            rows[at][0] = value;
        }
        for (const std::string& text : literals) {
            Criteria c = Criteria::Parse(text, true);
            c.Bind([](const std::string&) { return 0; });
            ASSERT_EQ(IndexFor(c, index), ScanFor(c, rows)) << text << " after step " << step;
        }
    }
}

}  // namespace
