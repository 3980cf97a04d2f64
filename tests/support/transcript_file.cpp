// Reading, comparing and rewriting golden transcript files.
#include "tests/support/transcript_file.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace kdvq::testing {
namespace {

namespace fs = std::filesystem;

// The situation's name as a file name: lower case, words joined by '-'.
std::string FileName(const std::string& situation) {
    std::string name;
    for (char c : situation) {
        if (std::isalnum(static_cast<unsigned char>(c))) {
            name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        } else if (!name.empty() && name.back() != '-') {
            name += '-';
        }
    }
    while (!name.empty() && name.back() == '-') name.pop_back();
    return name + ".txt";
}

// The lines as the file holds them, each ended by a newline.
std::string Text(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

bool UpdateMode() {
    const char* value = std::getenv("KDVQ_UPDATE_TRANSCRIPTS");
    return value && std::string(value) == "1";
}

}  // namespace

std::string TranscriptPath(const std::string& testFile, const std::string& situation) {
    // The compiler may name the source relative to the build folder; the
    // part from "tests/" on is the same either way.
    size_t at = testFile.rfind("tests/");
    fs::path source = fs::path(KDVQ_SOURCE_DIR) / (at == std::string::npos ? testFile : testFile.substr(at));
    return (source.parent_path() / "transcripts" / source.stem() / FileName(situation)).string();
}

void ExpectTranscript(const std::string& situation, const std::vector<std::string>& actual, const char* testFile) {
    const std::string path = TranscriptPath(testFile, situation);
    if (UpdateMode()) {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << Text(actual);
        return;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        ADD_FAILURE() << "no transcript file " << path << " (KDVQ_UPDATE_TRANSCRIPTS=1 writes it)";
        return;
    }
    std::stringstream expected;
    expected << in.rdbuf();
    // Both sides as multi-line strings, so that a mismatch prints a diff.
    EXPECT_EQ(expected.str(), Text(actual)) << "transcript " << path;
}

std::string ReplaceAll(std::string text, const std::string& what, const std::string& with) {
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
    return text;
}

}  // namespace kdvq::testing
