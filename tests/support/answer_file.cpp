// Answering the cases of a reviewed file (see answer_file.h).
#include "tests/support/answer_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/transcript_file.h"

namespace answer_file {

void ExpectAnswers(const std::string& situation, const Answer& answer, const char* testFile) {
    const std::string path = kdvq::testing::TranscriptPath(testFile, situation);
    std::ifstream in(path, std::ios::binary);
    ASSERT_TRUE(in) << "no case file " << path;
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        const std::string input = line.substr(0, line.find(" => "));
        SCOPED_TRACE(input);
        lines.push_back(input + " => " + answer(input));
    }
    kdvq::testing::ExpectTranscript(situation, lines, testFile);
}

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    for (size_t from = 0; !text.empty();) {
        const size_t at = text.find(separator, from);
        parts.push_back(text.substr(from, at == std::string::npos ? at : at - from));
        if (at == std::string::npos) break;
        from = at + separator.size();
    }
    return parts;
}

std::string Join(const std::vector<std::string>& parts, const std::string& separator) {
    std::string text;
    for (const std::string& part : parts) text += (&part == &parts.front() ? "" : separator) + part;
    return text;
}

}  // namespace answer_file
