// The Find/Filter criteria language on single values: what each clause
// matches, and which texts are refused; and the column index that answers
// equality criteria for large recordsets.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/ado/column_index.h"
#include "platform/ado/criteria.h"
#include "tests/platform/ado_test_util.h"
#include "tests/support/answer_file.h"
#include "tests/platform/typed_value.h"

namespace {

using automation::Variant;
using ado::criteria::Criteria;

// Each case, "filter or find; criteria; field value" (typed_value.h; find
// takes one clause), answers whether the value matches, or the error.
TEST(Criteria, MatchesFieldValuesAndRefusesMalformedText) {
    answer_file::ExpectAnswers("matches", [](const std::string& input) {
        const std::vector<std::string> fields = answer_file::Split(input, "; ");
        bool matches = false;
        const int32_t error = ado_test::ErrorOf([&] {
            Criteria c = Criteria::Parse(fields[1], fields[0] == "find");
            c.Bind([](const std::string&) { return 0; });
            matches = c.Matches({typed_value::Read(fields[2])});
        });
        return error ? "E" + std::to_string(error) : matches ? "True" : "False";
    });
    const std::string deep = std::string(100000, '(') + "A=1" + std::string(100000, ')');
    EXPECT_EQ(ado_test::ErrorOf([&] { Criteria::Parse(deep, false); }), ado::adErrInvalidArgument);
}

// Backtracking stays cheap where many stars can match in many ways.
TEST(Criteria, WildcardBacktracking) {
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
