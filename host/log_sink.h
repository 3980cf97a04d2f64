#pragma once
// Where the host's log entries go: a log file, opened on the first entry so
// that a run that logs nothing leaves no file, or the standard error
// stream. Each entry carries its time and level; the lines of a multi-line
// text follow the first one, indented.
#include <cstdint>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace kdhost {

// Levels of the entries: the upgraders report 1 (a failure) and 2 (a
// failure that was tolerated); the runner adds 3 for information.
enum LogLevel : int32_t { kLogFailure = 1, kLogTolerated = 2, kLogInformation = 3 };

class LogSink {
public:
    using Clock = std::function<std::string()>;  // the time stamp text

    // An empty path logs to the standard error stream.
    explicit LogSink(std::string path, Clock clock = LocalTimeStamp);
    ~LogSink();
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;

    void Write(const std::string& text, int32_t level);
    const std::string& Path() const { return path_; }

    // The lines an entry is written as (without line ends).
    static std::vector<std::string> Format(const std::string& stamp, const std::string& text, int32_t level);
    // "2024-05-17 09:41:07.250" in local time.
    static std::string LocalTimeStamp();

private:
    std::FILE* Stream();

    std::string path_;
    Clock clock_;
    std::FILE* file_ = nullptr;
    bool openFailed_ = false;
    std::mutex mutex_;
};

}  // namespace kdhost
