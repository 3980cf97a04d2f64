#pragma once
// The runner's output as an administrator watches it. Step texts from the
// upgraders are indented under the upgrader's heading. On a terminal a step
// shows "..." while it runs and its outcome is written on the same line
// when it finishes; a text that gets no outcome (a notice) loses its dots
// when the next text comes. Elsewhere (a file, a pipe) every text is a
// line of its own, with outcomes indented one step further.
//
// With a live status (SetStatus, on a terminal only) the last line of the
// screen is redrawn in place: the open step with its dots and the status
// after it, or the status alone. It is cut to the terminal's width so that
// it never wraps, and erased before anything else is written.
#include <cstdio>
#include <mutex>
#include <string>

namespace kdhost {

class Console {
public:
    Console(std::FILE* out, bool terminal) : out_(out), terminal_(terminal) {}

    // A line of its own (several when the text has line breaks).
    void Line(const std::string& text);
    // The step about to run, and the outcome of the step just finished.
    void StepStarting(const std::string& text);
    void StepFinished(const std::string& text);
    // Ends a step line left open, before something else uses the terminal;
    // the live line stays hidden until the console writes again.
    void Interrupt();

    // The live status text ("" for none); ignored without a terminal. Safe
    // to call from another thread.
    void SetStatus(const std::string& text);
    // Erases the live line and writes nothing more (the process is ending
    // on a signal and something else prints the last line).
    void Close();

    bool Terminal() const { return terminal_; }

private:
    void Write(const std::string& indent, const std::string& text, bool keepOpen);
    void EndOpenLine();
    bool Live() const { return terminal_ && !status_.empty(); }
    void EraseLive();
    void DrawLive();

    std::FILE* out_;
    bool terminal_;
    bool open_ = false;
    std::string openLine_;  // the step line shown with dots
    std::string status_;
    bool liveShown_ = false;   // the live line is on the screen
    bool suspended_ = false;   // after Interrupt, until the next write
    bool closed_ = false;
    std::recursive_mutex mutex_;
};

// The text cut to width columns (UTF-8 characters counted as one each).
std::string FitToWidth(const std::string& text, size_t width);

}  // namespace kdhost
