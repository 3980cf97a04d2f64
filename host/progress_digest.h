#pragma once
// Which of the upgraders' step texts the console shows during an upgrade.
// A long run of notices (texts that get no outcome, such as one per role
// of a pass over the whole repository) is shown up to a few; the rest are
// counted and summarised in one line when the run of notices ends, unless
// verbose. The administrator's messages (a text beginning "Warning:", with
// the tab-indented texts after it) are gathered for the end of the run.
// Every text, shown or not, goes to the log as the run's transcript.
#include <string>
#include <vector>

#include "host/console.h"
#include "host/live_status.h"
#include "host/log_sink.h"

namespace kdhost {

class ProgressDigest {
public:
    // transcript and live may be null.
    ProgressDigest(Console& console, LogSink* transcript, LiveStatus* live, bool verbose)
        : console_(console), transcript_(transcript), live_(live), verbose_(verbose) {}

    void StepStarting(const std::string& text);
    void StepFinished(const std::string& text);
    void UpgraderStarting(const std::string& className);
    void UpgraderFinished();

    // "KDVqUpgrader901sp1: Warning: role ...", one entry per message, its
    // lines joined with LF, in the order they came.
    const std::vector<std::string>& AdministratorMessages() const { return messages_; }

    // How many notices in a row are shown before the rest are summarised.
    static constexpr int kShownInARow = 5;

private:
    void Log(const std::string& text);
    void CollectMessage(const std::string& text);
    void ShowHiddenCount();

    Console& console_;
    LogSink* transcript_;
    LiveStatus* live_;
    bool verbose_;
    std::string className_;
    int inARow_ = 0;          // notices since the last outcome or upgrader
    long hidden_ = 0;         // of those, not shown
    std::string lastHidden_;  // the last one not shown: it may still get an outcome
    bool inMessage_ = false;  // the last text belonged to an administrator message
    std::vector<std::string> messages_;
};

}  // namespace kdhost
