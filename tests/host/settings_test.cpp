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

TEST(SettingsErrors, SayWhatIsWrong) {
    const ErrorCase cases[] = {
        {"ValueBeforeKey", "VersionName=1\n", "", "settings.ini:1: a value before the first [key]"},
        {"LineWithoutEquals", "[K]\nVersionName\n", "", "settings.ini:2: expected NAME=VALUE"},
        {"OptionWithoutValueName", "", "Key/=9", "a setting is KEY/VALUENAME=VALUE, not \"Key/=9\""},
        {"OptionWithoutEquals", "", "Key/Name", "a setting is KEY/VALUENAME=VALUE, not \"Key/Name\""},
        {"OptionWithEmptyKey", "", "/Name=1", "a setting is KEY/VALUENAME=VALUE, not \"/Name=1\""},
    };
    for (const ErrorCase& c : cases) {
        SCOPED_TRACE(c.name);
        Settings settings;
        try {
            if (!c.fileText.empty()) {
                settings.LoadText(c.fileText, "settings.ini");
            } else {
                settings.ApplyOption(c.option);
            }
            ADD_FAILURE() << "no error";
        } catch (const std::exception& e) {
            EXPECT_EQ(std::string(e.what()), c.message);
        }
    }
}

}  // namespace
}  // namespace kdhost::testing
