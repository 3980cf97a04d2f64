// Basic's conversion rules at their edges, the Dictionary and the
// Collection.
#include <gtest/gtest.h>

#include <functional>

#include "platform/automation/collection.h"
#include "platform/automation/dictionary.h"
#include "platform/automation/variant.h"
#include "tests/platform/answer_file.h"
#include "tests/platform/module/error_text.h"
#include "tests/platform/typed_value.h"

namespace automation {
namespace {

// The outcome of a conversion: its text form, or the error it raised.
std::string Outcome(const std::function<std::string()>& convert) {
    try {
        return convert();
    } catch (const BasicError& e) {
        return "error " + std::to_string(e.Number()) + " " + e.Description();
    }
}

// Each case, "situation; value" (typed_value.h), answers what CLng, CInt,
// CDbl, CStr and CBool give.
TEST(VariantTest, ConversionsFollowBasicsRules) {
    answer_file::ExpectAnswers("conversions", [](const std::string& input) {
        const Variant value = typed_value::Read(answer_file::Split(input, "; ")[1]);
        return answer_file::Join({Outcome([&] { return std::to_string(value.CLng()); }),
                                  Outcome([&] { return std::to_string(value.CInt()); }),
                                  Outcome([&] { return FormatBasicDouble(value.CDbl()); }),
                                  Outcome([&] { return value.CStr(); }),
                                  Outcome([&] { return std::string(value.CBool() ? "True" : "False"); })},
                                 "; ");
    });
}

std::string TrueOrFalse(bool value) { return value ? "True" : "False"; }

// Each case, "situation; a; b", answers whether a equals b in Basic, b a,
// and whether the two are the same value exactly.
TEST(VariantTest, BasicEqualityAndExactEquality) {
    answer_file::ExpectAnswers("equality", [](const std::string& input) {
        const std::vector<std::string> fields = answer_file::Split(input, "; ");
        const Variant a = typed_value::Read(fields[1]), b = typed_value::Read(fields[2]);
        return TrueOrFalse(a.EqualsBasic(b)) + "; " + TrueOrFalse(b.EqualsBasic(a)) + "; " + TrueOrFalse(a == b);
    });
}

// Each case answers the number, or "refused".
TEST(VariantTest, ParseBasicNumberAcceptsOnlyWholeNumbers) {
    answer_file::ExpectAnswers("basic numbers", [](const std::string& text) {
        double value = 0;
        return ParseBasicNumber(text, &value) ? FormatBasicDouble(value) : "refused";
    });
}

// Each case answers the serial the text reads as, and CStr of that date.
TEST(VariantTest, DatesBetweenTextAndSerial) {
    answer_file::ExpectAnswers("dates", [](const std::string& text) {
        return Outcome([&] {
            const double serial = Variant(text).CDate();
            return FormatBasicDouble(serial) + "; " + Variant::Date(serial).CStr();
        });
    });
}

TEST(VariantTest, CopiedArraysAreIndependentValues) {
    VariantArray items;
    items.items = {Variant::Long(1)};
    Variant original(items);
    Variant copy = original;
    copy.AsArray().items.push_back(Variant::Long(2));
    EXPECT_EQ(original.Describe(), "[1]");
    EXPECT_EQ(copy.Describe(), "[1, 2]");
}

using fixture::RaisedBy;

std::string Join(const std::vector<Variant>& values) {
    std::string out;
    for (const auto& v : values) out += (out.empty() ? "" : " ") + v.Describe();
    return out;
}

// Each case, "situation; compare mode; first key; second key", answers
// whether the second finds the first's entry, and what adding it raises.
TEST(DictionaryTest, KeysByModeAndType) {
    answer_file::ExpectAnswers("dictionary keys", [](const std::string& input) {
        const std::vector<std::string> fields = answer_file::Split(input, "; ");
        auto d = Dictionary::Create(fields[1] == "Text" ? CompareMode::Text : CompareMode::Binary);
        d->Add(typed_value::Read(fields[2]), Variant("one"));
        const Variant second = typed_value::Read(fields[3]);
        const std::string found = TrueOrFalse(d->Exists(second));
        return found + "; " + RaisedBy([&] { d->Add(second, Variant("two")); });
    });
}

TEST(DictionaryTest, KeepsInsertionOrderThroughReadsAndRemovals) {
    auto d = Dictionary::Create(CompareMode::Text);
    d->Add(Variant("b"), Variant::Long(2));
    d->Add(Variant("a"), Variant::Long(1));
    d->Add(Variant("c"), Variant::Long(3));
    EXPECT_EQ(d->Item(Variant("A")).Describe(), "1");
    // Reading a missing key adds it, Empty, at the end.
    EXPECT_TRUE(d->Item(Variant("d")).IsEmpty());
    d->Remove(Variant("B"));
    EXPECT_EQ(Join(d->Keys()), "'a' 'c' 'd'");
    EXPECT_EQ(Join(d->Items()), "1 3 Empty");
    EXPECT_EQ(d->Count(), 3);
    EXPECT_EQ(d->Lookup(Variant("c"))->Describe(), "3");
    EXPECT_EQ(d->Lookup(Variant("b")), nullptr);
    EXPECT_EQ(d->Count(), 3);  // Lookup does not add
}

TEST(DictionaryTest, Failures) {
    struct Case {
        const char* situation;
        std::function<void(Dictionary&)> action;
        std::string error;
    };
    const std::vector<Case> cases = {
        {"compare mode of a non-empty dictionary", [](Dictionary& d) { d.SetCompareMode(CompareMode::Text); },
         "5||Invalid procedure call or argument"},
        {"remove a missing key", [](Dictionary& d) { d.Remove(Variant("zz")); }, "32811||Element not found"},
        {"an array as key", [](Dictionary& d) { d.Add(Variant(VariantArray{}), Variant()); }, "13||Type mismatch"},
        {"compare mode after RemoveAll", [](Dictionary& d) { d.RemoveAll(); d.SetCompareMode(CompareMode::Text); },
         "nothing"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        auto d = Dictionary::Create();
        d->Add(Variant("k"), Variant("v"));
        EXPECT_EQ(RaisedBy([&] { c.action(*d); }), c.error);
    }
}

TEST(CollectionTest, OneBasedPositions) {
    auto c = Collection::Create();
    c->Add(Variant("x"));
    c->Add(Variant("y"));
    c->Add(Variant("z"));
    c->Remove(2);
    EXPECT_EQ(c->Count(), 2);
    EXPECT_EQ(c->Item(1).Describe() + " " + c->Item(2).Describe(), "'x' 'z'");
    for (int32_t outside : {0, 3, -1}) {
        SCOPED_TRACE(outside);
        EXPECT_EQ(RaisedBy([&] { c->Item(outside); }), "9||Subscript out of range");
        EXPECT_EQ(RaisedBy([&] { c->Remove(outside); }), "9||Subscript out of range");
    }
}

}  // namespace
}  // namespace automation
