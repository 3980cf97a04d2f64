#include "host/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <vector>

#include "host/text_lines.h"

namespace kdhost {

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

// Columns of the terminal; 80 when it does not say.
size_t TerminalWidth(std::FILE* out) {
    winsize size{};
    if (::ioctl(::fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return 80;
}

bool ContinuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

std::string FitToWidth(const std::string& text, size_t width) {
    size_t columns = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (ContinuesCharacter(text[i])) continue;
        if (columns == width) return text.substr(0, i);
        ++columns;
    }
    return text;
}

void Console::EraseLive() {
    if (!liveShown_) return;
    std::fputs("\r\x1b[K", out_);
    liveShown_ = false;
}

void Console::DrawLive() {
    if (!Live() || suspended_ || closed_) return;
    std::string text = open_ ? openLine_ + " ... " + status_ : status_;
    // One column short of the width: a line that fills it would wrap on
    // some terminals.
    std::fputs(FitToWidth(text, TerminalWidth(out_) - 1).c_str(), out_);
    liveShown_ = true;
}

void Console::EndOpenLine() {
    if (!open_) return;
    if (Live()) {
        std::fprintf(out_, "%s\n", openLine_.c_str());
    } else {
        // Back to the start of the line: the text again, the dots erased.
        std::fprintf(out_, "\r%s\x1b[K\n", openLine_.c_str());
    }
    open_ = false;
}

void Console::Write(const std::string& indent, const std::string& text, bool keepOpen) {
    Lock lock(mutex_);
    if (closed_) return;
    suspended_ = false;
    EraseLive();
    EndOpenLine();
    std::vector<std::string> lines = SplitLines(text);
    for (size_t i = 0; i < lines.size(); ++i) {
        std::string line = TrimRight(i == 0 ? indent + lines[i] : indent + "  " + lines[i]);
        bool last = i + 1 == lines.size();
        if (last && keepOpen) {
            // With a live line the open step is drawn as part of it.
            if (!Live()) std::fprintf(out_, "%s ...", line.c_str());
            open_ = true;
            openLine_ = line;
        } else {
            std::fprintf(out_, "%s\n", line.c_str());
        }
    }
    DrawLive();
    std::fflush(out_);
}

void Console::Line(const std::string& text) { Write("", text, false); }

void Console::StepStarting(const std::string& text) { Write("  ", text, terminal_); }

void Console::StepFinished(const std::string& text) {
    Lock lock(mutex_);
    if (closed_) return;
    std::vector<std::string> lines = SplitLines(text);
    if (open_ && lines.size() == 1) {
        suspended_ = false;
        EraseLive();
        if (Live()) std::fprintf(out_, "%s ...", openLine_.c_str());
        std::fprintf(out_, " %s\n", TrimRight(lines.front()).c_str());
        open_ = false;
        DrawLive();
        std::fflush(out_);
        return;
    }
    Write("    ", text, false);
}

void Console::Interrupt() {
    Lock lock(mutex_);
    if (closed_) return;
    EraseLive();
    EndOpenLine();
    suspended_ = true;
    std::fflush(out_);
}

void Console::SetStatus(const std::string& text) {
    Lock lock(mutex_);
    if (!terminal_ || closed_) return;
    EraseLive();
    // A step left open while there was no live line shows its dots already.
    if (open_ && status_.empty() && !text.empty()) std::fputs("\r\x1b[K", out_);
    status_ = text;
    if (open_ && status_.empty()) std::fprintf(out_, "%s ...", openLine_.c_str());
    DrawLive();
    std::fflush(out_);
}

void Console::Close() {
    Lock lock(mutex_);
    EraseLive();
    if (open_ && Live()) std::fputs(openLine_.c_str(), out_);
    if (open_) std::fputs("\n", out_);
    closed_ = true;
    std::fflush(out_);
}

}  // namespace kdhost
