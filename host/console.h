#pragma once
// The runner's output as an administrator watches it. Step texts from the
// upgraders are indented under the upgrader's heading. On a terminal a step
// shows "..." while it runs and its outcome is written on the same line
// when it finishes; a text that gets no outcome (a notice) loses its dots
// when the next text comes. Elsewhere (a file, a pipe) every text is a
// line of its own, with outcomes indented one step further.
#include <cstdio>
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
    // Ends a step line left open, before something else uses the terminal.
    void Interrupt();

    bool Terminal() const { return terminal_; }

private:
    void Write(const std::string& indent, const std::string& text, bool keepOpen);

    std::FILE* out_;
    bool terminal_;
    bool open_ = false;
    std::string openLine_;  // the step line shown with dots
};

}  // namespace kdhost
