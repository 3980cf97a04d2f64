#pragma once
// The expected output of a table-driven case, kept as a reviewed file
// named after the case (transcripts/<test file>/<case in words>.txt) in
// place of a long text written into the table.
#include <cctype>
#include <string>
#include <vector>

#include "tests/support/transcript_file.h"

namespace kdhost::testing {

// "NoVersionTable" -> " No Version Table": the file name's words.
inline std::string Words(const std::string& camelCase) {
    std::string words;
    for (char c : camelCase) words += std::string(std::isupper(static_cast<unsigned char>(c)) ? " " : "") + c;
    return words;
}

// The text split at every line end, so that the file tells whether the
// text ends with one (then its last line is empty). Carriage returns and
// escape characters are written <CR> and <ESC>: the file shows them.
inline std::vector<std::string> ExactLines(const std::string& text) {
    std::vector<std::string> lines(1);
    for (char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += c == '\r' ? "<CR>" : c == '\x1b' ? "<ESC>" : std::string(1, c);
        }
    }
    return lines;
}

inline void ExpectCaseOutput(const std::string& caseName, const std::string& text,
                             const char* testFile = __builtin_FILE()) {
    kdvq::testing::ExpectTranscript(Words(caseName), ExactLines(text), testFile);
}

}  // namespace kdhost::testing
