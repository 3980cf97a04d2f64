#pragma once
// Golden transcripts kept as reviewed text files beside the tests that
// drive them: tests/<area>/transcripts/<test file>/<situation>.txt, one
// line of the transcript a line. A run is compared with its file whole;
// a mismatch fails with a line diff. With KDVQ_UPDATE_TRANSCRIPTS=1 the
// run rewrites the file instead, for review in the change.
#include <string>
#include <vector>

namespace kdvq::testing {

// The file of one situation of the test source file testFile (as
// __FILE__ or __builtin_FILE() name it).
std::string TranscriptPath(const std::string& testFile, const std::string& situation);

// Compares actual with the situation's file (or rewrites the file in
// update mode); a failure names the file and shows the diff.
void ExpectTranscript(const std::string& situation, const std::vector<std::string>& actual,
                      const char* testFile = __builtin_FILE());

// The text with every occurrence of what (not empty) replaced by with: how
// a run's paths and other machine-bound texts become the marks its
// transcript is written with, and back.
std::string ReplaceAll(std::string text, const std::string& what, const std::string& with);

}  // namespace kdvq::testing
