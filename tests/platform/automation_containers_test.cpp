// The Dictionary and the Collection.
#include <gtest/gtest.h>

#include "platform/automation/collection.h"
#include "platform/automation/dictionary.h"
#include "tests/platform/module/error_text.h"

namespace automation {
namespace {

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
