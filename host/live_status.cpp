#include "host/live_status.h"

#include <cstdio>

namespace kdhost {

namespace {

// Often enough that the tenths of a second change visibly between redraws.
constexpr std::chrono::milliseconds kRedrawEvery{250};

}  // namespace

std::string WithThousands(long number) {
    std::string digits = std::to_string(number < 0 ? -number : number);
    std::string text;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return (number < 0 ? "-" : "") + text;
}

std::string LiveStatus::Text(const std::string& className, double seconds, const CallCounts& sinceStart,
                             const std::string& latestHidden) {
    char time[32];
    std::snprintf(time, sizeof time, "%.1f s", seconds);
    std::string text = "[" + className + " " + time + ", " + WithThousands(sinceStart.statements) +
                       " statements, " + WithThousands(sinceStart.rowWrites) + " row writes]";
    if (!latestHidden.empty()) text += " " + latestHidden;
    return text;
}

LiveStatus::LiveStatus(Console& console) : console_(console) {
    if (console_.Terminal()) thread_ = std::thread([this] { Run(); });
}

LiveStatus::~LiveStatus() {
    if (!thread_.joinable()) return;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    thread_.join();
    console_.SetStatus("");
}

void LiveStatus::UpgraderStarting(const std::string& className) {
    std::lock_guard<std::mutex> lock(mutex_);
    className_ = className;
    latestHidden_.clear();
    started_ = std::chrono::steady_clock::now();
    atStart_ = CountedCalls();
}

void LiveStatus::UpgraderFinished() {
    std::lock_guard<std::mutex> lock(mutex_);
    className_.clear();
    latestHidden_.clear();
    console_.SetStatus("");
}

void LiveStatus::LatestHidden(const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    latestHidden_ = text;
}

// Called with the lock held, so that a text computed for an upgrader that
// has just finished cannot be drawn after its end cleared the line. The
// console never calls back in here, so the two locks are always taken in
// this order.
void LiveStatus::Show() {
    if (className_.empty()) return;
    CallCounts now = CountedCalls();
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started_).count();
    console_.SetStatus(Text(className_, seconds,
                            {now.statements - atStart_.statements, now.rowWrites - atStart_.rowWrites},
                            latestHidden_));
}

void LiveStatus::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!stop_) {
        wake_.wait_for(lock, kRedrawEvery);
        if (!stop_) Show();
    }
}

}  // namespace kdhost
