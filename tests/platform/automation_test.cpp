// Basic's conversion rules at their edges, the Dictionary and the
// Collection, and the Basic error of each kind of failure.
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "platform/automation/collection.h"
#include "platform/automation/dictionary.h"
#include "platform/automation/variant.h"
#include "tests/platform/module/error_text.h"

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

struct ConversionCase {
    const char* situation;
    Variant input;
    std::string clng, cint, cdbl, cstr, cbool;
};

TEST(VariantTest, ConversionsFollowBasicsRules) {
    const std::string overflow = "error 6 Overflow";
    const std::string mismatch = "error 13 Type mismatch";
    const std::string null = "error 94 Invalid use of Null";
    const std::vector<ConversionCase> cases = {
        {"half rounds to even below", 2.5, "2", "2", "2.5", "2.5", "True"},
        {"half rounds to even above", 3.5, "4", "4", "3.5", "3.5", "True"},
        {"negative half rounds to even", -2.5, "-2", "-2", "-2.5", "-2.5", "True"},
        {"just under the rounding point", 2.4999, "2", "2", "2.4999", "2.4999", "True"},
        {"largest Long after rounding down", 2147483647.4, "2147483647", overflow, "2147483647.4", "2147483647.4",
         "True"},
        {"rounds past the largest Long", 2147483647.5, overflow, overflow, "2147483647.5", "2147483647.5", "True"},
        {"smallest Long", -2147483648.0, "-2147483648", overflow, "-2147483648", "-2147483648", "True"},
        {"largest Integer after rounding down", 32767.4, "32767", "32767", "32767.4", "32767.4", "True"},
        {"rounds past the largest Integer", 32767.5, "32768", overflow, "32767.5", "32767.5", "True"},
        {"smallest Integer", -32768.0, "-32768", "-32768", "-32768", "-32768", "True"},
        {"large Double prints with an exponent", 1e20, overflow, overflow, "1E+20", "1E+20", "True"},
        {"numeric text", "12", "12", "12", "12", "12", "True"},
        {"numeric text with blanks and fraction", " 2.5 ", "2", "2", "2.5", " 2.5 ", "True"},
        {"text with an exponent", "1e3", "1000", "1000", "1000", "1e3", "True"},
        {"hex text of 16 bits is negative", "&HFFFF", "-1", "-1", "-1", "&HFFFF", "True"},
        {"text that is no number", "abc", mismatch, mismatch, mismatch, "abc", mismatch},
        {"empty text", "", mismatch, mismatch, mismatch, "", mismatch},
        {"text True", "true", mismatch, mismatch, mismatch, "true", "True"},
        {"Null", Variant::Null(), null, null, null, null, null},
        {"Empty", Variant(), "0", "0", "0", "", "False"},
        {"Boolean True is all bits set", Variant::Boolean(true), "-1", "-1", "-1", "True", "True"},
        {"Boolean False", Variant::Boolean(false), "0", "0", "0", "False", "False"},
        {"Integer", Variant::Integer(-7), "-7", "-7", "-7", "-7", "True"},
        {"Long beyond Integer", Variant::Long(40000), "40000", overflow, "40000", "40000", "True"},
        {"Long zero", Variant::Long(0), "0", "0", "0", "0", "False"},
        {"Date", Variant::Date(45351.5), "45352", overflow, "45351.5", "2024-02-29 12:00:00", "True"},
        {"Date with no time", Variant::Date(2), "2", "2", "2", "1900-01-01", "True"},
        {"an object", Variant(com::ComPtr<com::IUnknown>(Collection::Create()->Unknown())), mismatch, mismatch,
         mismatch, mismatch, mismatch},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        EXPECT_EQ(Outcome([&] { return std::to_string(c.input.CLng()); }), c.clng);
        EXPECT_EQ(Outcome([&] { return std::to_string(c.input.CInt()); }), c.cint);
        EXPECT_EQ(Outcome([&] { return FormatBasicDouble(c.input.CDbl()); }), c.cdbl);
        EXPECT_EQ(Outcome([&] { return c.input.CStr(); }), c.cstr);
        EXPECT_EQ(Outcome([&] { return std::string(c.input.CBool() ? "True" : "False"); }), c.cbool);
    }
}

TEST(VariantTest, BasicEqualityAndExactEquality) {
    struct Case {
        const char* situation;
        Variant a, b;
        bool basicEqual, exactEqual;
    };
    const std::vector<Case> cases = {
        {"Integer and Long of one value", Variant::Integer(1), Variant::Long(1), true, false},
        {"Long and Double of one value", Variant::Long(2), Variant(2.0), true, false},
        {"number and numeric text differ", Variant::Long(1), Variant("1"), false, false},
        {"text compares case-sensitively", Variant("A"), Variant("a"), false, false},
        {"Empty equals empty text", Variant(), Variant(""), true, false},
        {"Empty equals zero", Variant(), Variant::Long(0), true, false},
        {"Null never equals", Variant::Null(), Variant::Null(), false, true},
        {"True equals -1", Variant::Boolean(true), Variant::Long(-1), true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        EXPECT_EQ(c.a.EqualsBasic(c.b), c.basicEqual);
        EXPECT_EQ(c.b.EqualsBasic(c.a), c.basicEqual);
        EXPECT_EQ(c.a == c.b, c.exactEqual);
    }
}

TEST(VariantTest, ParseBasicNumberAcceptsOnlyWholeNumbers) {
    const std::vector<std::pair<std::string, std::optional<double>>> cases = {
        {"42", 42.0},      {"  -3.25\t", -3.25}, {"+.5", 0.5},      {"1D2", 100.0},  {"&H10", 16.0},
        {"&o17", 15.0},    {"&HFFFFFFFF", -1.0}, {"&H10000", 65536.0},
        {"", std::nullopt}, {"-", std::nullopt},  {".", std::nullopt}, {"1e", std::nullopt},
        {"12abc", std::nullopt}, {"1 2", std::nullopt}, {"&H", std::nullopt}, {"&O8", std::nullopt},
        {"&H123456789", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        double value = 0;
        const bool parsed = ParseBasicNumber(text, &value);
        EXPECT_EQ(parsed, expected.has_value());
        if (parsed && expected) {
            EXPECT_EQ(value, *expected);
        }
    }
}

TEST(VariantTest, DatesBetweenTextAndSerial) {
    const std::string mismatch = "error 13 Type mismatch";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"1899-12-30", "0"},
        {"1900-01-01", "2"},
        {"2024-02-29 12:00", "45351.5"},
        {"2000-02-29T06:00:00", "36585.25"},
        {"1899-12-29 06:00", "-1.25"},
        {"0001-01-01", "-693593"},
        {"18:00", "0.75"},
        {"2023-02-29", mismatch},
        {"1900-02-29", mismatch},
        {"2024-13-01", mismatch},
        {"2024-01-01 24:00", mismatch},
        {"yesterday", mismatch},
    };
    for (const auto& [text, serial] : cases) {
        SCOPED_TRACE(text);
        const std::string read = Outcome([&] { return FormatBasicDouble(Variant(text).CDate()); });
        EXPECT_EQ(read, serial);
        // CStr writes it back in the form it was read, seconds and "T" aside.
        if (read != mismatch) {
            std::string back = text;
            if (back.size() > 10 && back[10] == 'T') back[10] = ' ';
            if (back.size() == 16 || back.size() == 5) back += ":00";
            EXPECT_EQ(Variant::Date(Variant(text).CDate()).CStr(), back);
        }
    }
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

TEST(DictionaryTest, KeysByModeAndType) {
    struct Case {
        const char* situation;
        CompareMode mode;
        Variant first, second;
        bool sameKey;
    };
    const std::vector<Case> cases = {
        {"binary mode tells case", CompareMode::Binary, Variant("Name"), Variant("NAME"), false},
        {"text mode ignores case", CompareMode::Text, Variant("Name"), Variant("NAME"), true},
        {"number and its text differ", CompareMode::Text, Variant::Long(1), Variant("1"), false},
        {"Integer and Long of one value agree", CompareMode::Binary, Variant::Integer(1), Variant::Long(1), true},
        {"Long and Double of one value agree", CompareMode::Binary, Variant::Long(3), Variant(3.0), true},
        {"Boolean True is not -1", CompareMode::Binary, Variant::Boolean(true), Variant::Long(-1), false},
        {"Empty and empty text differ", CompareMode::Binary, Variant(), Variant(""), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        auto d = Dictionary::Create(c.mode);
        d->Add(c.first, Variant("one"));
        EXPECT_EQ(d->Exists(c.second), c.sameKey);
        EXPECT_EQ(RaisedBy([&] { d->Add(c.second, Variant("two")); }),
                  c.sameKey ? "457||This key is already associated with an element of this collection" : "nothing");
    }
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

TEST(BasicErrorTest, CurrentErrorOfEachKindOfException) {
    struct Case {
        const char* situation;
        std::function<void()> thrower;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"a BasicError as it is", [] { throw BasicError(1234, "src", "custom", 7); }, "1234|src|custom|7"},
        {"out of memory", [] { throw std::bad_alloc(); }, "7||Out of memory|0"},
        {"a standard exception", [] { throw std::runtime_error("disk gone"); }, "440||disk gone|0"},
        {"anything else", [] { throw 42; }, "440||Unknown failure|0"},
        {"RaiseBasic", [] { RaiseBasic(kErrInvalidUseOfNull, "here"); }, "94|here|Invalid use of Null|0"},
        {"an unknown number", [] { RaiseBasic(31999); }, "31999||Application-defined or object-defined error|0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        try {
            c.thrower();
            ADD_FAILURE() << "nothing thrown";
        } catch (...) {
            const BasicError e = CurrentError();
            EXPECT_EQ(std::to_string(e.Number()) + "|" + e.Source() + "|" + e.Description() + "|" +
                          std::to_string(e.Line()),
                      c.expected);
        }
    }
}

}  // namespace
}  // namespace automation
