// Identifiers in text form, and Basic error numbers as results of calls.
#include <gtest/gtest.h>

#include "platform/com/error_info.h"
#include "platform/com/guid.h"

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

}  // namespace
}  // namespace com
