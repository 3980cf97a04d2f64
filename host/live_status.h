#pragma once
// The live status line of an upgrade on a terminal: the running upgrader,
// the time it has taken so far and the statements and row writes it has
// sent, redrawn by a thread of its own several times a second, so that the
// screen never sits still during a long step.
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "host/call_counts.h"
#include "host/console.h"

namespace kdhost {

class LiveStatus {
public:
    // Starts the thread only when the console is a terminal.
    explicit LiveStatus(Console& console);
    // Stops the thread and clears the line.
    ~LiveStatus();
    LiveStatus(const LiveStatus&) = delete;
    LiveStatus& operator=(const LiveStatus&) = delete;

    void UpgraderStarting(const std::string& className);
    void UpgraderFinished();
    // The latest progress text the console did not show, if any.
    void LatestHidden(const std::string& text);

    // "[KDVqUpgrader902 12.3 s, 1,234 statements, 56 row writes]"
    static std::string Text(const std::string& className, double seconds, const CallCounts& sinceStart,
                            const std::string& latestHidden);

private:
    void Run();
    void Show();

    Console& console_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stop_ = false;
    std::string className_;  // "" between upgraders
    std::string latestHidden_;
    std::chrono::steady_clock::time_point started_;
    CallCounts atStart_;
    std::thread thread_;
};

// 1234567 as "1,234,567".
std::string WithThousands(long number);

}  // namespace kdhost
