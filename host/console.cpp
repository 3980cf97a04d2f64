#include "host/console.h"

#include <vector>

#include "host/text_lines.h"

namespace kdhost {

void Console::Write(const std::string& indent, const std::string& text, bool keepOpen) {
    Interrupt();
    std::vector<std::string> lines = SplitLines(text);
    for (size_t i = 0; i < lines.size(); ++i) {
        std::string line = TrimRight(i == 0 ? indent + lines[i] : indent + "  " + lines[i]);
        bool last = i + 1 == lines.size();
        if (last && keepOpen) {
            std::fprintf(out_, "%s ...", line.c_str());
            open_ = true;
            openLine_ = line;
        } else {
            std::fprintf(out_, "%s\n", line.c_str());
        }
    }
    std::fflush(out_);
}

void Console::Line(const std::string& text) { Write("", text, false); }

void Console::StepStarting(const std::string& text) { Write("  ", text, terminal_); }

void Console::StepFinished(const std::string& text) {
    std::vector<std::string> lines = SplitLines(text);
    if (open_ && lines.size() == 1) {
        std::fprintf(out_, " %s\n", TrimRight(lines.front()).c_str());
        std::fflush(out_);
        open_ = false;
        return;
    }
    Write("    ", text, false);
}

void Console::Interrupt() {
    if (!open_) return;
    // Back to the start of the line: the text again, the dots erased.
    std::fprintf(out_, "\r%s\x1b[K\n", openLine_.c_str());
    std::fflush(out_);
    open_ = false;
}

}  // namespace kdhost
