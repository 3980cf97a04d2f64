#pragma once
// Cases kept as reviewed text beside the test that answers them, one a
// line, "<input> => <answer>", in the test's transcript folder
// (tests/support/transcript_file.h). The test answers every input afresh
// and the lines are compared with the file whole: a changed answer shows
// as a diff, and KDVQ_UPDATE_TRANSCRIPTS=1 rewrites the answers for review.
#include <functional>
#include <string>
#include <vector>

namespace answer_file {

using Answer = std::function<std::string(const std::string& input)>;

void ExpectAnswers(const std::string& situation, const Answer& answer, const char* testFile = __builtin_FILE());

// The parts of text between separators; none for empty text.
std::vector<std::string> Split(const std::string& text, const std::string& separator);

// The parts joined by the separator.
std::string Join(const std::vector<std::string>& parts, const std::string& separator);

}  // namespace answer_file
