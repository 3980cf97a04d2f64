// Identifiers in text form, and Basic error numbers as results of calls.
#include <gtest/gtest.h>

#include "platform/com/error_info.h"
#include "platform/com/guid.h"
#include "tests/platform/answer_file.h"

namespace com {
namespace {

// Each case answers the identifier formatted, or "refused"; what is
// formatted reads back as the same identifier.
TEST(GuidTest, ParsesAnyCaseFormatsUpperCaseAndRejectsMalformedText) {
    answer_file::ExpectAnswers("guids", [](const std::string& text) {
        const std::optional<GUID> guid = ParseGuid(text);
        if (!guid) return std::string("refused");
        EXPECT_EQ(ParseGuid(FormatGuid(*guid)), guid);
        return FormatGuid(*guid);
    });
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
