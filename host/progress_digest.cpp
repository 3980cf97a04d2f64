#include "host/progress_digest.h"

#include "platform/automation/text_case.h"

namespace kdhost {

namespace {

std::string TrimLeft(const std::string& text) {
    size_t start = text.find_first_not_of(" \t");
    return start == std::string::npos ? "" : text.substr(start);
}

bool StartsMessage(const std::string& text) {
    const std::string start = "warning:";
    std::string trimmed = TrimLeft(text);
    return automation::SameTextIgnoringCase(trimmed.substr(0, start.size()), start);
}

}  // namespace

void ProgressDigest::Log(const std::string& text) {
    if (transcript_) transcript_->Write(className_ + ": " + text, kLogInformation);
}

void ProgressDigest::CollectMessage(const std::string& text) {
    if (StartsMessage(text)) {
        messages_.push_back(className_ + ": " + TrimLeft(text));
        inMessage_ = true;
    } else if (inMessage_ && !text.empty() && text[0] == '\t') {
        messages_.back() += "\n" + TrimLeft(text);
    } else {
        inMessage_ = false;
    }
}

void ProgressDigest::ShowHiddenCount() {
    if (hidden_ > 0) {
        console_.StepStarting(WithThousands(hidden_) + " more like these (in the log; --verbose shows them)");
    }
    hidden_ = 0;
    lastHidden_.clear();
    if (live_) live_->LatestHidden("");
}

void ProgressDigest::StepStarting(const std::string& text) {
    Log(text);
    CollectMessage(text);
    ++inARow_;
    if (verbose_ || inARow_ <= kShownInARow) {
        console_.StepStarting(text);
        return;
    }
    ++hidden_;
    lastHidden_ = text;
    if (live_) live_->LatestHidden(TrimLeft(text));
}

void ProgressDigest::StepFinished(const std::string& text) {
    Log("  " + text);
    inMessage_ = false;
    inARow_ = 0;
    // The step this outcome belongs to was not shown: it is, with its
    // outcome, after the count of those before it.
    std::string step = lastHidden_;
    if (!step.empty()) --hidden_;
    ShowHiddenCount();
    if (!step.empty()) console_.StepStarting(step);
    console_.StepFinished(text);
}

void ProgressDigest::UpgraderStarting(const std::string& className) {
    className_ = className;
    inARow_ = 0;
    inMessage_ = false;
}

void ProgressDigest::UpgraderFinished() {
    ShowHiddenCount();
    inARow_ = 0;
    inMessage_ = false;
}

}  // namespace kdhost
