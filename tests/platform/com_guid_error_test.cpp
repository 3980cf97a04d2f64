// Identifiers in text form, and Basic error numbers as results of calls.
#include <gtest/gtest.h>

#include <cstdio>

#include "platform/com/error_info.h"
#include "platform/com/guid.h"
#include "tests/support/answer_file.h"

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

// Each Basic number answers the call result it becomes and the number a
// caller sees again for that result: a failure code passes as it is, and
// numbers beyond 16 bits and 0 have no result of their own.
TEST(HResultTest, BasicNumbersAndResultsMapBothWays) {
    answer_file::ExpectAnswers("basic numbers", [](const std::string& number) {
        const HRESULT hr = HResultFromBasicError(std::stoi(number));
        char hex[16];
        std::snprintf(hex, sizeof hex, "0x%08X", static_cast<uint32_t>(hr));
        return std::string(hex) + "; " + std::to_string(BasicErrorFromHResult(hr));
    });
}

}  // namespace
}  // namespace com
