// The host objects as the upgrader library sees them: created through the
// component runtime by their class identifiers while a HostServices lives.
// What every upgrade run shows (substituted texts, the category, the log,
// answers given with the options) is left to the end-to-end tests; here are
// the answers a run seldom meets.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_services.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"
#include "tests/host/runner_process.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

using kdvq::Variant;
using kdvq::VariantArray;

class HostObjects : public ::testing::Test {
protected:
    HostObjects() {
        auto settings = std::make_shared<Settings>();
        settings->Set("BulletinBoard Version", "VersionName", "9.3.1");
        settings->Set("Numbers", "Count", "42");
        configuration_.log = std::make_shared<LogSink>(folder_.File("host.log"), [] { return std::string("T"); });
        configuration_.strings = std::make_shared<StringTable>(
            StringTable::Parse("102\tDone.\n502\tAdding column %1 to table %2\n", "test-strings"));
        configuration_.answers = answers_;
        configuration_.settings = settings;
        services_ = std::make_unique<HostServices>(configuration_);
    }

    template <class T>
    com::ComPtr<T> Make(const com::CLSID& clsid, const com::IID& iid) {
        com::HRESULT hr = com::S_OK;
        com::ComPtr<T> object = com::CreateInstance<T>(clsid, iid, &hr);
        EXPECT_TRUE(com::Succeeded(hr));
        return object;
    }

    std::string Ask(const std::string& title) {
        auto box = Make<kdvq::IKDInputBox>(kClsidInputBox, kIidInputBox);
        std::string answer = "unset";
        EXPECT_EQ(box->InputBox("Enter it:", title, "", Variant(), Variant(), Variant(), Variant(), &answer),
                  com::S_OK);
        return answer;
    }

    kdvq::testing::TempDir folder_;
    std::shared_ptr<InputBoxAnswers> answers_ = std::make_shared<InputBoxAnswers>();
    HostConfiguration configuration_;
    std::unique_ptr<HostServices> services_;
};

TEST_F(HostObjects, AMissingStringFailsWithItsNumber) {
    auto strings = Make<kdvq::IKDResourceStrings>(kClsidResourceStrings, kIidResourceStrings);
    strings->Initialize("kdVqUpgraders");
    std::string text;
    EXPECT_TRUE(com::Failed(strings->GetString(999, VariantArray{}, &text)));
    EXPECT_EQ(com::TakeErrorInfo().description, "String 999 of kdVqUpgraders is missing from test-strings");
}

// A typed answer the box's check refuses is told with the reason and the
// question asked again (an accepted second answer is in
// terminal_question_test.cpp); no answer stays no answer.
TEST_F(HostObjects, ATypedAnswerItsCheckRefusesIsAskedAgain) {
    std::vector<std::string> typed = {"O'Brien", ""};
    std::vector<std::string> told;
    answers_->interactive = true;
    answers_->ask = [&](const std::string&, const std::string&, const std::string&) {
        std::string next = typed.front();
        typed.erase(typed.begin());
        return next;
    };
    answers_->checksByTitle["Other"] = [](const std::string& answer) {
        return answer.find('\'') == std::string::npos ? "" : "no quotes in " + answer;
    };
    answers_->tell = [&](const std::string& reason) { told.push_back(reason); };
    EXPECT_EQ(Ask("Other"), "");
    EXPECT_EQ(told, std::vector<std::string>{"no quotes in O'Brien"});
    EXPECT_TRUE(typed.empty());
}

struct RegistryCase {
    std::string name;
    std::string key;
    std::string valueName;
    int32_t type;
    Variant defaultValue;
    Variant expected;
};

void PrintTo(const RegistryCase& value, std::ostream* out) { *out << value.name; }

class RegistryValues : public HostObjects, public ::testing::WithParamInterface<RegistryCase> {};

TEST_P(RegistryValues, ComeFromTheSettingsOrTheDefault) {
    auto registry = Make<kdvq::IKDRegistry>(kClsidRegistry, kIidRegistry);
    ASSERT_EQ(registry->OpenKey(kdvq::kHkeyLocalMachine, 2, GetParam().key), com::S_OK);
    Variant value;
    ASSERT_EQ(registry->ReadValue(GetParam().valueName, GetParam().type, GetParam().defaultValue, &value), com::S_OK);
    EXPECT_EQ(value, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RegistryValues,
    ::testing::Values(
        RegistryCase{"AbsentGivesTheDefault", "BulletinBoard Version", "Build", 8, Variant("none"), Variant("none")},
        RegistryCase{"AbsentWithoutDefaultIsEmptyText", "Missing", "VersionName", 8, Variant(), Variant("")},
        RegistryCase{"NumberAsLong", "Numbers", "Count", 3, Variant(), Variant::Long(42)}),
    [](const ::testing::TestParamInfo<RegistryCase>& info) { return info.param.name; });

}  // namespace
}  // namespace kdhost::testing
