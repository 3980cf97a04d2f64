// Wherever the runner shows an ODBC target, the password is "***": in the
// connection string as written, and in a driver's message that repeats the
// string or the password.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/target.h"
#include "tests/support/answer_file.h"

namespace kdhost::testing {
namespace {

// The cases are in transcripts/odbc_password_mask_test/shapes.txt, one a
// line: the connection string, and a driver's message after " | " when the
// case has one.
TEST(TargetPasswordMasking, ShowsEveryPasswordAsStars) {
    answer_file::ExpectAnswers("shapes", [](const std::string& input) {
        const std::vector<std::string> parts = answer_file::Split(input, " | ");
        Target target = ParseTarget("odbc:" + parts[0]);
        std::string shown = target.text.substr(std::string("odbc:").size());
        return parts.size() > 1 ? shown + " | " + target.Shown(parts[1]) : shown;
    });
}

}  // namespace
}  // namespace kdhost::testing
