// Basic's conversion rules at their edges, the Dictionary and the
// Collection.
#include <gtest/gtest.h>

#include <functional>

#include "platform/automation/collection.h"
#include "platform/automation/dictionary.h"
#include "platform/automation/variant.h"
#include "tests/support/answer_file.h"
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

// Each case, "situation; steps" (" / " between them), runs the steps on a
// new Dictionary comparing text and a new Collection, keys and values
// written as typed_value.h reads them. Dictionary: add|KEY|VALUE, item|KEY,
// lookup|KEY ("none" when missing), keys, items, count; Collection:
// push|VALUE, at|N, size.
// The steps that read answer what they read, a failing step its error.
TEST(DictionaryAndCollectionTest, AnswerScripts) {
    answer_file::ExpectAnswers("scripts", [](const std::string& input) {
        auto d = Dictionary::Create(CompareMode::Text);
        auto c = Collection::Create();
        std::vector<std::string> answers;
        for (const std::string& step : answer_file::Split(answer_file::Split(input, "; ")[1], " / ")) {
            const std::vector<std::string> p = answer_file::Split(step, "|");
            const auto value = [&](size_t i) { return typed_value::Read(p.at(i)); };
            std::string answer;
            const std::string raised = RaisedBy([&] {
                if (p[0] == "add") d->Add(value(1), value(2));
                else if (p[0] == "item") answer = d->Item(value(1)).Describe();
                else if (p[0] == "lookup") answer = d->Lookup(value(1)) ? d->Lookup(value(1))->Describe() : "none";
                else if (p[0] == "keys") answer = Join(d->Keys());
                else if (p[0] == "items") answer = Join(d->Items());
                else if (p[0] == "count") answer = std::to_string(d->Count());
                else if (p[0] == "push") c->Add(value(1));
                else if (p[0] == "at") answer = c->Item(std::stoi(p[1])).Describe();
                else if (p[0] == "size") answer = std::to_string(c->Count());
                else answer = "unknown step " + p[0];
            });
            if (raised != "nothing") answer = raised;
            if (!answer.empty()) answers.push_back(answer);
        }
        return answer_file::Join(answers, " / ");
    });
}

}  // namespace
}  // namespace automation
