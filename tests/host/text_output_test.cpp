// What the runner shows and writes: console step lines, log entries, the
// presentation of a run.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/case_transcript.h"
#include "host/console.h"
#include "host/log_sink.h"
#include "host/run_presenter.h"
#include "tests/host/memory_stream.h"
#include "tests/host/runner_process.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

// What each case prints is in transcripts/text_output_test, in a file
// named after the case.
struct ConsoleCase {
    std::string name;
    bool terminal;
    std::function<void(Console&)> write;
};

void PrintTo(const ConsoleCase& value, std::ostream* out) { *out << value.name; }

class ConsoleOutput : public ::testing::TestWithParam<ConsoleCase> {};

TEST_P(ConsoleOutput, PrintsStepsAsExpected) {
    MemoryStream stream;
    Console console(stream.File(), GetParam().terminal);
    GetParam().write(console);
    ExpectCaseOutput(GetParam().name, stream.Text());
}

void StepAndOutcome(Console& c) {
    c.StepStarting("Creating table KD_VQ_TASKS");
    c.StepFinished("Done.");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ConsoleOutput,
    ::testing::Values(
        // Without a terminal every text is a plain line of its own.
        ConsoleCase{"WithoutATerminal", false,
                    [](Console& c) {
                        StepAndOutcome(c);
                        c.StepStarting("modMain::DoCommand\r\n-2147217900: no such table\r\nCommand: x");
                        c.StepStarting("\tA role belongs to one extension only.  ");
                        c.StepStarting("");
                        c.SetStatus("[S]");
                        c.Line("x");
                    }},
        ConsoleCase{"TerminalOutcomeOnTheStepLineOrAlone", true,
                    [](Console& c) {
                        StepAndOutcome(c);
                        c.StepFinished("Done.");
                    }},
        ConsoleCase{"TerminalNoticeLosesItsDotsAtTheNextText", true,
                    [](Console& c) {
                        c.StepStarting("Tables created.");
                        c.StepStarting("Adding column A to table B");
                        c.Line("KDVqUpgrader832: Framework upgrade");
                    }},
        ConsoleCase{"InterruptEndsAnOpenLineOnce", true,
                    [](Console& c) {
                        c.StepStarting("Updating table X");
                        c.Interrupt();
                        c.Interrupt();
                    }},
        // The live status line: always the last line, erased before
        // anything else is written and drawn again after it.
        ConsoleCase{"LiveLineRedrawnInPlaceAndAfterALine", true,
                    [](Console& c) {
                        c.SetStatus("[A 1.0 s]");
                        c.SetStatus("[A 1.2 s]");
                        c.Line("x");
                    }},
        ConsoleCase{"OpenStepIsPartOfTheLiveLine", true,
                    [](Console& c) {
                        c.SetStatus("[S]");
                        c.StepStarting("Updating");
                        c.StepFinished("Done.");
                    }},
        ConsoleCase{"NoticeUnderTheLiveLineEndsAsAPlainLine", true,
                    [](Console& c) {
                        c.SetStatus("[S]");
                        c.StepStarting("Role A");
                        c.StepStarting("Role B");
                    }},
        ConsoleCase{"StatusComesAndGoesOverAnOpenStep", true,
                    [](Console& c) {
                        c.StepStarting("Updating");
                        c.SetStatus("[S]");
                        c.SetStatus("");
                    }},
        // Cut to the width by characters, never inside one.
        ConsoleCase{"LiveLineCutToTheWidth", true,
                    [](Console& c) {
                        c.SetStatus(std::string(100, 'x') + "\xC3\xA9");
                        std::string text;
                        for (int i = 0; i < 90; ++i) text += "\xC3\xA9";
                        c.SetStatus(text);
                    }},
        ConsoleCase{"CloseErasesTheLiveLineAndSilences", true,
                    [](Console& c) {
                        c.SetStatus("[S]");
                        c.StepStarting("Updating");
                        c.Close();
                        c.Line("late");
                        c.SetStatus("[T]");
                    }},
        ConsoleCase{"InterruptHidesTheLiveLineUntilTheNextWrite", true,
                    [](Console& c) {
                        c.SetStatus("[S]");
                        c.Interrupt();
                        c.SetStatus("[T]");
                        c.Line("x");
                    }}),
    [](const ::testing::TestParamInfo<ConsoleCase>& info) { return info.param.name; });

// Information entries are in the progress digest's log test.
TEST(LogSinkFile, IsCreatedByTheFirstEntryAndNamesLevels) {
    kdvq::testing::TempDir folder;
    std::string path = folder.File("run.log");
    LogSink sink(path, [] { return std::string("T"); });
    EXPECT_FALSE(FileExists(path));
    sink.Write("a\r\nb", kLogFailure);
    sink.Write("c", kLogTolerated);
    sink.Write("d", kLogTolerated);
    sink.Write("e", 7);
    EXPECT_EQ(ReadWholeFile(path), "T ERROR a\n    b\nT TOLERATED c\nT TOLERATED d\nT LEVEL 7 e\n");
}

UpgraderOutcome Outcome(const std::string& name, bool result, bool failure, const std::string& call = "",
                        const std::string& error = "") {
    UpgraderOutcome outcome;
    outcome.className = name;
    outcome.pass = 2;
    outcome.result = result;
    outcome.failure = failure;
    outcome.failedCall = call;
    outcome.error = error;
    outcome.seconds = 1.5;
    return outcome;
}

TEST(RunPresentation, ShowsPassesOutcomesAndSystemTables) {
    MemoryStream stream;
    Console console(stream.File(), false);
    RunPresenter presenter(console, false);
    presenter.PassStarting(2, 1206, false);
    presenter.UpgraderStarting("KDVqUpgrader832", "Framework upgrade to release 8.3.2");
    presenter.UpgraderFinished(Outcome("KDVqUpgrader832", true, false));
    presenter.UpgraderStarting("KDUpgradeSM830", "Session Manager upgrade to release 8.3.0");
    presenter.UpgraderFinished(Outcome("KDUpgradeSM830", false, true));
    presenter.UpgraderFinished(Outcome("KDUpgradeWFM830", false, true, "Enabled", "tag\r\nno such table"));
    presenter.UpgraderStarting("KDVqUpgrader902", "Framework upgrade to release 9.0.2");
    presenter.UpgraderFinished(Outcome("KDVqUpgrader902", false, true, "Execute", "overflow"));
    presenter.PassStarting(3, 4866, true);
    presenter.UpgraderStarting("KDCreateTableIndices", "Create table indices");
    presenter.UpgraderFinished(Outcome("KDCreateTableIndices", false, false));
    presenter.SystemTablesListed({"mobile", "KDHideMobileTables",
                                  {"KD_MOBILE_DB_VERSION", "KD_MOBILE_PACKET_ADAPTERS", "KD_MOBILE_STATE",
                                   "KD_MOBILE_STORED_DISPLAY", "KD_MOBILE_EXTRA"}});
    kdvq::testing::ExpectTranscript("run presentation", Lines(stream.Text()));
}

}  // namespace
}  // namespace kdhost::testing
