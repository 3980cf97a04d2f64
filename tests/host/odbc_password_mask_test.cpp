// Wherever the runner shows an ODBC target, the password is "***": in the
// connection string as written, and in a driver's message that repeats the
// string or the password.
#include <string>

#include <gtest/gtest.h>

#include "host/target.h"

namespace kdhost::testing {
namespace {

struct MaskCase {
    std::string name;
    std::string connection;
    std::string shown;         // the target as the runner writes it, after "odbc:"
    std::string message = "";  // a driver's message, when the case has one
    std::string shownMessage = "";
};

void PrintTo(const MaskCase& value, std::ostream* out) { *out << value.name; }

class TargetPasswordMasking : public ::testing::TestWithParam<MaskCase> {};

TEST_P(TargetPasswordMasking, ShowsEveryPasswordAsStars) {
    Target target = ParseTarget("odbc:" + GetParam().connection);
    EXPECT_EQ(target.text, "odbc:" + GetParam().shown);
    EXPECT_EQ(target.Shown(GetParam().message), GetParam().shownMessage);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, TargetPasswordMasking,
    ::testing::Values(
        MaskCase{"BlanksAroundKeyAndEquals", "Uid=u; PWD = secret ;Server=h", "Uid=u; PWD = *** ;Server=h"},
        MaskCase{"BlankBeforeBrace", "Password= {a;b};Uid=u", "Password= ***;Uid=u"},
        MaskCase{"UnclosedBraceHidesTheRest", "Pwd={se;Server=h", "Pwd=***"},
        MaskCase{"RepeatedKeys", "Pwd=one;Uid=u;PWD=two;password={three}", "Pwd=***;Uid=u;PWD=***;password=***"},
        MaskCase{"EmptyPasswordStays", "Uid=u;Pwd=;", "Uid=u;Pwd=;"},
        MaskCase{"OtherKeysEndingInPwd", "OldPwd=x;PwdHint=y;Database={a=b;Pwd=c}",
                 "OldPwd=x;PwdHint=y;Database={a=b;Pwd=c}"},
        MaskCase{"PartWithoutEquals", "Trusted;Pwd=secret", "Trusted;Pwd=***"},
        // What a driver's message may repeat.
        MaskCase{"MessageRepeatsTheString", "Server=h;Pwd={a;b}", "Server=h;Pwd=***",
                 "cannot connect with Server=h;Pwd={a;b}.", "cannot connect with Server=h;Pwd=***."},
        MaskCase{"MessageHasTheValueAsTheDriverReadsIt", "Server=h;Pwd={x}}y;z}", "Server=h;Pwd=***",
                 "password \"x}y;z\" refused", "password \"***\" refused"},
        MaskCase{"MessageRepeatsThePair", "Server=h; pwd = s3cr3t ;", "Server=h; pwd = *** ;",
                 "bad option pwd = s3cr3t", "bad option pwd = ***"},
        MaskCase{"MessageWithoutPassword", "Server=h;Uid=u", "Server=h;Uid=u", "Uid=u refused", "Uid=u refused"}),
    [](const ::testing::TestParamInfo<MaskCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
