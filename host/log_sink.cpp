#include "host/log_sink.h"

#include <chrono>
#include <ctime>

#include "host/text_lines.h"

namespace kdhost {

namespace {

std::string LevelName(int32_t level) {
    switch (level) {
        case kLogFailure: return "ERROR";
        case kLogTolerated: return "TOLERATED";
        case kLogInformation: return "INFO";
        default: return "LEVEL " + std::to_string(level);
    }
}

}  // namespace

LogSink::LogSink(std::string path, Clock clock) : path_(std::move(path)), clock_(std::move(clock)) {}

LogSink::~LogSink() {
    if (file_) std::fclose(file_);
}

std::FILE* LogSink::Stream() {
    if (path_.empty()) return stderr;
    if (!file_ && !openFailed_) {
        file_ = std::fopen(path_.c_str(), "a");
        if (!file_) {
            // A log that cannot be written must not stop an upgrade; the
            // entries go to the standard error stream instead.
            openFailed_ = true;
            std::fprintf(stderr, "kdvq-upgrade: cannot write the log %s; logging to the terminal\n", path_.c_str());
        }
    }
    return file_ ? file_ : stderr;
}

void LogSink::Write(const std::string& text, int32_t level) {
    std::lock_guard<std::mutex> lock(mutex_);
    std::FILE* out = Stream();
    for (const std::string& line : Format(clock_(), text, level)) std::fprintf(out, "%s\n", line.c_str());
    std::fflush(out);
}

std::vector<std::string> LogSink::Format(const std::string& stamp, const std::string& text, int32_t level) {
    std::vector<std::string> lines = SplitLines(text);
    std::vector<std::string> out;
    out.push_back(stamp + " " + LevelName(level) + " " + lines.front());
    for (size_t i = 1; i < lines.size(); ++i) out.push_back("    " + lines[i]);
    return out;
}

std::string LogSink::LocalTimeStamp() {
    auto now = std::chrono::system_clock::now();
    std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[40];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    char stamp[48];
    std::snprintf(stamp, sizeof stamp, "%s.%03d", text, static_cast<int>(millis));
    return stamp;
}

}  // namespace kdhost
