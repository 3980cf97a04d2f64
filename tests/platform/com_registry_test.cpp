// The registry file: round trip, order, corrupt files, where it lives.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/automation/basic_error.h"
#include "platform/com/runtime.h"
#include "tests/support/answer_file.h"
#include "tests/platform/module/error_text.h"
#include "tests/platform/module/fixture.h"
#include "tests/support/transcript_file.h"

namespace com {
namespace {

const GUID kCategoryA = MakeGuid("{11111111-0000-0000-0000-000000000001}");
const GUID kCategoryB = MakeGuid("{11111111-0000-0000-0000-000000000002}");

ClassRegistration Class(const char* clsid, const char* name, std::vector<GUID> categories) {
    return {MakeGuid(clsid), std::string("Test.") + name, name, "/opt/lib/lib" + std::string(name) + ".so",
            std::move(categories)};
}

std::string Names(const std::vector<ClassRegistration>& classes) {
    std::string out;
    for (const auto& c : classes) out += (out.empty() ? "" : " ") + c.name;
    return out;
}

std::vector<std::string> Lines(const std::string& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

void WriteFile(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

TEST(RegistryTest, SaveAndLoadRoundTripInRegistrationOrder) {
    fixture::ScopedRegistryFile file;
    Registry registry;
    registry.RegisterClass(Class("{00000000-0000-0000-0000-00000000000C}", "Charlie", {kCategoryA}));
    registry.RegisterClass(Class("{00000000-0000-0000-0000-00000000000A}", "Alpha", {kCategoryA, kCategoryB}));
    registry.RegisterClass(Class("{00000000-0000-0000-0000-00000000000B}", "Bravo", {kCategoryB}));
    // Replacing keeps the position; values with line breaks survive.
    ClassRegistration odd = Class("{00000000-0000-0000-0000-00000000000C}", "Charlie", {kCategoryA});
    odd.name = "Char\\lie\r\nsecond line";
    registry.RegisterClass(odd);
    registry.RegisterInterface(MakeGuid("{00000000-0000-0000-0000-0000000000F1}"), "IFirst", "/opt/lib/a.so");
    registry.Save();  // creates the missing directory

    const Registry loaded = Registry::Load();
    EXPECT_EQ(Names(loaded.Classes()), "Char\\lie\r\nsecond line Alpha Bravo");
    EXPECT_EQ(Names(loaded.ClassesOfCategory(kCategoryA)), "Char\\lie\r\nsecond line Alpha");
    EXPECT_EQ(Names(loaded.ClassesOfCategory(kCategoryB)), "Alpha Bravo");
    EXPECT_EQ(Names(loaded.ClassesOfCategory(MakeGuid("{99999999-0000-0000-0000-000000000000}"))), "");
    ASSERT_NE(loaded.FindInterface(MakeGuid("{00000000-0000-0000-0000-0000000000F1}")), nullptr);
    EXPECT_EQ(loaded.FindInterface(MakeGuid("{00000000-0000-0000-0000-0000000000F1}"))->name, "IFirst");
    kdvq::testing::ExpectTranscript("saved", Lines(file.Path()));

    Registry changed = loaded;
    changed.UnregisterClass(MakeGuid("{00000000-0000-0000-0000-00000000000A}"));
    changed.UnregisterInterface(MakeGuid("{00000000-0000-0000-0000-0000000000F1}"));
    changed.Save();
    EXPECT_EQ(Names(Registry::Load().Classes()), "Char\\lie\r\nsecond line Bravo");
    EXPECT_TRUE(Registry::Load().Interfaces().empty());
}

// Text as a case file writes it: "\n" a line break, "\xNN" a byte, "\\"
// a backslash.
std::string Unescaped(const std::string& text) {
    std::string out;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            out += text[at];
        } else if (text[++at] == 'x') {
            out += static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16));
            at += 2;
        } else {
            out += text[at] == 'n' ? '\n' : text[at];
        }
    }
    return out;
}

// Each case, "situation; the file's text", answers why loading refused it
// (after "registry <path>, ").
TEST(RegistryTest, CorruptFilesRaiseNamingTheLine) {
    answer_file::ExpectAnswers("corrupt files", [](const std::string& input) {
        fixture::ScopedRegistryFile file;
        Registry().Save();  // creates the directory
        WriteFile(file.Path(), Unescaped(input.substr(input.find("; ") + 2)));
        const std::string prefix = "321|kdplatform|Invalid file format: registry " + file.Path() + ", ";
        const std::string raised = fixture::RaisedBy([] { Registry::Load(); });
        return raised.rfind(prefix, 0) == 0 ? raised.substr(prefix.size()) : raised;
    });
}

TEST(RegistryTest, UnwritableLocationRaises) {
    fixture::ScopedRegistryFile file;
    WriteFile(file.Dir() + "/sub", "a file where the directory should be");
    EXPECT_EQ(fixture::RaisedBy([] { Registry().Save(); }),
              "75|kdplatform|Path/File access error: cannot create directory " + file.Dir() + "/sub: Not a directory");
}

// Each case, "KDVQ_REGISTRY; XDG_CONFIG_HOME; HOME" ("unset" for a variable
// not set), answers where the registry file lives.
TEST(RegistryTest, PathComesFromTheEnvironment) {
    fixture::ScopedRegistryFile restoreRegistry;
    const std::string savedConfig = getenv("XDG_CONFIG_HOME") ? getenv("XDG_CONFIG_HOME") : "";
    const std::string savedHome = getenv("HOME") ? getenv("HOME") : "";
    auto set = [](const char* name, const char* value) {
        if (value) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
    };
    answer_file::ExpectAnswers("paths", [&](const std::string& input) {
        const std::vector<std::string> values = answer_file::Split(input, "; ");
        const char* const names[] = {"KDVQ_REGISTRY", "XDG_CONFIG_HOME", "HOME"};
        for (size_t i = 0; i < 3; ++i) set(names[i], values[i] == "unset" ? nullptr : values[i].c_str());
        return RegistryPath();
    });
    set("XDG_CONFIG_HOME", savedConfig.empty() ? nullptr : savedConfig.c_str());
    set("HOME", savedHome.c_str());
}

}  // namespace
}  // namespace com
