#include "host/run_presenter.h"

#include <cstdio>

namespace kdhost {

namespace {

// The system-table names, a few per line.
constexpr size_t kNamesPerLine = 4;

// The console indents the lines after a text's first by two blanks more;
// this adds to that.
std::string Indented(const std::string& text, const std::string& indent) {
    std::string out = indent;
    for (char c : text) {
        out += c;
        if (c == '\n') out += indent;
    }
    return out;
}

}  // namespace

std::string RunPresenter::Time(double seconds) const {
    if (!showTimes_) return "";
    char text[32];
    std::snprintf(text, sizeof text, " (%.2f s)", seconds);
    return text;
}

void RunPresenter::PassStarting(int pass, int32_t coreVersion, bool final) {
    console_.Line((final ? "Final pass " + std::to_string(pass) + ", for the upgraders that move no version"
                         : "Pass " + std::to_string(pass)) +
                  " (core version " + std::to_string(coreVersion) + ")");
}

void RunPresenter::UpgraderStarting(const std::string& className, const std::string& name) {
    started_ = className;
    console_.Line(className + ": " + name);
}

void RunPresenter::UpgraderFinished(const UpgraderOutcome& outcome) {
    if (started_ != outcome.className) console_.Line(outcome.className);
    started_.clear();
    if (outcome.failedCall == "create") {
        console_.Line("  FAILED: the class cannot be created:\n" + Indented(outcome.error, "  "));
    } else if (outcome.failedCall == "Enabled") {
        console_.Line("  FAILED: its Enabled test raised an error:\n" + Indented(outcome.error, "  "));
    } else if (outcome.failedCall == "Execute") {
        console_.Line("  FAILED with an error" + Time(outcome.seconds) + ":\n" + Indented(outcome.error, "  "));
    } else if (outcome.failedCall == "commit") {
        console_.Line("  FAILED" + Time(outcome.seconds) + ": " + outcome.error);
    } else if (outcome.result) {
        console_.Line("  succeeded" + Time(outcome.seconds));
    } else if (!outcome.failure) {
        console_.Line("  done" + Time(outcome.seconds) + "; it answers False by design, which is no failure");
    } else {
        console_.Line("  FAILED: answered False" + Time(outcome.seconds));
    }
}

void RunPresenter::SystemTablesListed(const SystemTableList& list) {
    std::string text = "  System tables of the " + list.part + " part (" + std::to_string(list.tables.size()) + "):";
    for (size_t i = 0; i < list.tables.size(); ++i) {
        text += (i % kNamesPerLine == 0 ? "\n  " : ", ") + list.tables[i];
    }
    console_.Line(text);
}

std::string FailureSummary(const RunResult& run, const std::string& logPath) {
    std::string which;
    for (const UpgraderOutcome& outcome : run.outcomes) {
        if (!outcome.failure) continue;
        which += (which.empty() ? "" : ", ") + outcome.className +
                 (outcome.failedCall.empty() ? " answered False"
                                             : " failed in " + outcome.failedCall);
    }
    if (!run.interruption.empty()) which += (which.empty() ? "" : "; ") + run.interruption;
    return "the upgrade is incomplete: " + which + ".\n" + "The log " + logPath +
           " holds the details. Correct the cause and run the upgrade again;" +
           " upgraders that succeeded are not offered again.";
}

}  // namespace kdhost
