// The Find/Filter criteria language on single values: what each clause
// matches, and which texts are refused.
#include <gtest/gtest.h>

#include <random>

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

class CriteriaMatch : public ::testing::TestWithParam<MatchCase> {};

TEST_P(CriteriaMatch, AgainstFieldValue) {
    EXPECT_EQ(Matches(GetParam().criteria, GetParam().value), GetParam().expected)
        << GetParam().criteria << " with " << GetParam().value.Describe();
}

INSTANTIATE_TEST_SUITE_P(
    Ado, CriteriaMatch,
    ::testing::Values(
        MatchCase{"A=12", Variant::Long(12), true},
        MatchCase{"A = 12", Variant(12.0), true},
        MatchCase{"A=12", Variant::Integer(12), true},
        MatchCase{"A=12", Variant("12"), true},          // the number as the text field sees it
        MatchCase{"A=12", Variant("12.0"), false},
        MatchCase{"A=-1", Variant::Boolean(true), true},
        MatchCase{"A=1e1", Variant::Long(10), true},
        MatchCase{"A=$5", Variant::Long(5), true},
        MatchCase{"A<>12", Variant::Long(13), true},
        MatchCase{"A<>12", Variant::Null(), false},      // Null matches no comparison
        MatchCase{"A=NULL", Variant::Null(), true},
        MatchCase{"A=null", Variant(), true},
        MatchCase{"A<>NULL", Variant::Long(0), true},
        MatchCase{"A<2.5", Variant(2.25), true},
        MatchCase{"A>=2.5", Variant(2.5), true},
        MatchCase{"A<=2", Variant(2.5), false},
        MatchCase{"A>'abc'", Variant("ABD"), true},       // text compares without case
        MatchCase{"A='x'", Variant("X"), true},
        MatchCase{"A='it''s'", Variant("it's"), true},
        MatchCase{"A='7'", Variant::Long(7), true},       // text read as the number field's type
        MatchCase{"A='seven'", Variant::Long(7), false},
        MatchCase{"A=#WA#", Variant("wa"), true},         // #...# that is no date is text
        MatchCase{"A=#1/31/2020#", Variant::Date(43861), true},
        MatchCase{"A=#2020-01-31#", Variant("2020-01-31 00:00:00"), true},
        MatchCase{"A>#2020-01-31#", Variant("2020-01-31 00:00:01"), true},
        MatchCase{"A=#1/31/2020 1:30 PM#", Variant::Date(43861.5625), true},
        MatchCase{"A LIKE 'ab*'", Variant("ABC"), true},
        MatchCase{"A LIKE '%b%'", Variant("abc"), true},
        MatchCase{"A like 'b*'", Variant("abc"), false},
        MatchCase{"A LIKE '1*'", Variant::Long(12), true},
        MatchCase{"A LIKE '*'", Variant::Null(), false},
        MatchCase{"A=1 AND A<>1", Variant::Long(1), false},
        MatchCase{"A=1 OR A=2 AND A=3", Variant::Long(1), true},  // AND binds tighter
        MatchCase{"(A=1 OR A=2) AND A=3", Variant::Long(1), false},
        MatchCase{"[A]=1", Variant::Long(1), true}),
    [](const ::testing::TestParamInfo<MatchCase>& info) { return "case" + std::to_string(info.index); });

struct BadText {
    const char* criteria;
    bool single;
};

class CriteriaRefused : public ::testing::TestWithParam<BadText> {};

TEST_P(CriteriaRefused, Raises3001) {
    EXPECT_EQ(ado_test::ErrorOf([&] { Criteria::Parse(GetParam().criteria, GetParam().single); }),
              ado::adErrInvalidArgument)
        << GetParam().criteria;
}

INSTANTIATE_TEST_SUITE_P(
    Ado, CriteriaRefused,
    ::testing::Values(BadText{"", false}, BadText{"A", false}, BadText{"A=", false}, BadText{"=1", false},
                      BadText{"A==1", false}, BadText{"A=abc", false}, BadText{"A='open", false},
                      BadText{"A=#1/1/2020", false}, BadText{"A=1 AND", false}, BadText{"A=1 B=2", false},
                      BadText{"(A=1", false}, BadText{"A=1)", false}, BadText{"A<NULL", false},
                      BadText{"[A=1", false}, BadText{"A=1e999", false}, BadText{"A=1 AND B=2", true},
                      BadText{"A=1 OR B=2", true}, BadText{"(A=1)", true}),
    [](const ::testing::TestParamInfo<BadText>& info) { return "case" + std::to_string(info.index); });

TEST(Criteria, DeepNestingIsRefusedNotOverflowed) {
    std::string text = std::string(100000, '(') + "A=1" + std::string(100000, ')');
    EXPECT_EQ(ado_test::ErrorOf([&] { Criteria::Parse(text, false); }), ado::adErrInvalidArgument);
}

TEST(Criteria, AnyTextEitherParsesOrRaises3001) {
    const char* pieces[] = {"A", "=", "<", ">", "'", "''", "#", "1", ".", "e", "-", "(", ")", " AND ", " OR ",
                            " LIKE ", "NULL", "[", "]", "*", "$", "/", ":", " "};
    std::mt19937 random(11);
    for (int n = 0; n < 20000; ++n) {
        std::string text;
        int length = static_cast<int>(random() % 12);
        for (int i = 0; i < length; ++i) text += pieces[random() % std::size(pieces)];
        int32_t error = ado_test::ErrorOf([&] {
            Criteria c = Criteria::Parse(text, false);
            c.Bind([](const std::string&) { return 0; });
            c.Matches({Variant("x")});
        });
        EXPECT_TRUE(error == 0 || error == ado::adErrInvalidArgument) << text;
    }
}

TEST(Criteria, WildcardBacktracking) {
    EXPECT_TRUE(ado::criteria::WildcardMatch("abcabcabd", "*abd"));
    EXPECT_TRUE(ado::criteria::WildcardMatch("", "*"));
    EXPECT_FALSE(ado::criteria::WildcardMatch(std::string(5000, 'a'), std::string(50, '*') + "b"));
}

}  // namespace
