// The host's settings: the settings file and the --setting options that the
// registry component reads from.
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "host/settings.h"

namespace kdhost::testing {
namespace {

TEST(SettingsFile, ReadsKeysAndValuesWithoutRegardToCase) {
    Settings settings;
    settings.LoadText("# machine settings\n[BulletinBoard Version]\n  VersionName = 9.3.1 \n; note\n[Other]\nA=\n",
                      "settings.ini");
    EXPECT_EQ(settings.Get("bulletinboard version", "VERSIONNAME"), "9.3.1");
    EXPECT_EQ(settings.Get("Other", "A"), "");
    EXPECT_EQ(settings.Get("Other", "B"), std::nullopt);
    EXPECT_EQ(settings.Get("Missing", "A"), std::nullopt);
}

TEST(SettingsFile, OptionsWinOverTheFile) {
    Settings settings;
    settings.LoadText("[BulletinBoard Version]\nVersionName=9.2\n", "settings.ini");
    settings.ApplyOption("BulletinBoard Version/VersionName=9.3.1 rev2");
    settings.ApplyOption("Software/Vendor/Key/Name=a=b");
    EXPECT_EQ(settings.Get("BulletinBoard Version", "VersionName"), "9.3.1 rev2");
    EXPECT_EQ(settings.Get("Software/Vendor/Key", "Name"), "a=b");
}

struct ErrorCase {
    std::string name;
    std::string fileText;  // empty: apply option instead
    std::string option;
    std::string message;
};

void PrintTo(const ErrorCase& value, std::ostream* out) { *out << value.name; }

class SettingsErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(SettingsErrors, SayWhatIsWrong) {
    Settings settings;
    try {
        if (!GetParam().fileText.empty()) {
            settings.LoadText(GetParam().fileText, "settings.ini");
        } else {
            settings.ApplyOption(GetParam().option);
        }
        FAIL() << "no error";
    } catch (const std::exception& e) {
        EXPECT_EQ(std::string(e.what()), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SettingsErrors,
    ::testing::Values(
        ErrorCase{"ValueBeforeKey", "VersionName=1\n", "", "settings.ini:1: a value before the first [key]"},
        ErrorCase{"LineWithoutEquals", "[K]\nVersionName\n", "", "settings.ini:2: expected NAME=VALUE"},
        ErrorCase{"OptionWithoutValueName", "", "Key/=9", "a setting is KEY/VALUENAME=VALUE, not \"Key/=9\""},
        ErrorCase{"OptionWithoutEquals", "", "Key/Name", "a setting is KEY/VALUENAME=VALUE, not \"Key/Name\""},
        ErrorCase{"OptionWithEmptyKey", "", "/Name=1", "a setting is KEY/VALUENAME=VALUE, not \"/Name=1\""}),
    [](const ::testing::TestParamInfo<ErrorCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
