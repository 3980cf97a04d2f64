// Identifiers in text form, and failures across an interface boundary.
#include <gtest/gtest.h>

#include "platform/com/error_info.h"
#include "platform/com/guid.h"
#include "tests/platform/module/error_text.h"

namespace com {
namespace {

TEST(GuidTest, ParsesAnyCaseAndFormatsUpperCase) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"{00000000-0000-0000-C000-000000000046}", "{00000000-0000-0000-C000-000000000046}"},
        {"{9addd0f3-2471-4ec4-b342-85db55eaaa60}", "{9ADDD0F3-2471-4EC4-B342-85DB55EAAA60}"},
        {"{FFFFFFFF-ffff-FfFf-0102-030405060708}", "{FFFFFFFF-FFFF-FFFF-0102-030405060708}"},
    };
    for (const auto& [text, formatted] : cases) {
        auto g = ParseGuid(text);
        ASSERT_TRUE(g) << text;
        EXPECT_EQ(FormatGuid(*g), formatted);
        EXPECT_EQ(ParseGuid(formatted), g);
    }
}

TEST(GuidTest, RejectsMalformedText) {
    const std::vector<std::string> cases = {
        "",
        "00000000-0000-0000-C000-000000000046",     // no braces
        "{00000000-0000-0000-C000-000000000046",    // no closing brace
        "{00000000-0000-0000-C000-0000000000046}",  // one digit too many
        "{0000000-00000-0000-C000-000000000046}",   // dash misplaced
        "{00000000-0000-0000-C000-00000000004G}",   // not hex
        "{00000000 0000-0000-C000-000000000046}",   // blank for a dash
        " {00000000-0000-0000-C000-000000000046}",  // leading blank
        "{+0000000-0000-0000-C000-000000000046}",   // sign
    };
    for (const auto& text : cases) {
        EXPECT_FALSE(ParseGuid(text)) << text;
    }
    EXPECT_THROW(MakeGuid("{bad}"), std::invalid_argument);
}

TEST(HResultTest, BasicNumbersAndResultsMapBothWays) {
    struct Case {
        int32_t number;
        uint32_t hr;
        int32_t back;  // the number a caller sees again
    };
    const std::vector<Case> cases = {
        {5, 0x800A0005u, 5},
        {457, 0x800A01C9u, 457},
        {0xFFFF, 0x800AFFFFu, 0xFFFF},
        {-2147221164, 0x80040154u, -2147221164},  // a failure code passes as it is
        {0x10000, 0x80004005u, static_cast<int32_t>(0x80004005u)},
        {0, 0x80004005u, static_cast<int32_t>(0x80004005u)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.number);
        const HRESULT hr = HResultFromBasicError(c.number);
        EXPECT_EQ(static_cast<uint32_t>(hr), c.hr);
        EXPECT_EQ(BasicErrorFromHResult(hr), c.back);
    }
}

using fixture::RaisedFor;

TEST(ErrorInfoTest, CheckRaisesWhatTheCalleeStored) {
    struct Case {
        const char* situation;
        std::function<HRESULT()> call;
        std::string raised;
    };
    const std::vector<Case> cases = {
        {"success raises nothing", [] { return Guard([] {}); }, "nothing"},
        {"a BasicError crosses the boundary",
         [] { return Guard([] { throw automation::BasicError(94, "kdVqUpgraders", "tag\r\nInvalid use of Null"); }); },
         "94|kdVqUpgraders|tag\r\nInvalid use of Null"},
        {"a standard exception", [] { return Guard([] { throw std::logic_error("broken"); }); }, "440||broken"},
        {"a result without info", [] { return E_NOINTERFACE; }, "-2147467262||No such interface supported"},
        {"a Basic number without info", [] { return HResultFromBasicError(13); }, "13||Type mismatch"},
        {"info beside a result of the callee's own keeps the result's number",
         [] {
             Guard([] { throw automation::BasicError(5, "registration", "no category service"); });
             return SELFREG_E_CLASS;
         },
         "-2147220991|registration|no category service"},
        {"a boundary forgets info nobody collected",
         [] {
             SetErrorInfo({6, "old", "old failure"});
             Guard([] {});
             return E_FAIL;
         },
         "-2147467259||Unspecified error"},
        {"an unknown result", [] { return static_cast<HRESULT>(0x80070002u); }, "-2147024894||Automation error"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        EXPECT_EQ(RaisedFor(c.call()), c.raised);
        EXPECT_EQ(TakeErrorInfo().number, 0);  // Check consumed the info
    }
}

}  // namespace
}  // namespace com
