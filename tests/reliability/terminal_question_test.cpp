// On a terminal, an upgrade that an upgrader will ask the repository's
// identifier of asks for it once, before the first upgrader; an answer
// that would break the statements is refused with the reason and the
// question asked again.
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reliability/workbench.h"

namespace kdhost::testing {
namespace {

const char kQuestion[] =
    "Database ID\nThis repository has no database identifier yet. Enter the identifier to give it: ";

const char kReason[] =
    "\"O'Brien\" holds a single quote, which would break the upgraders' SQL statements; use an identifier without "
    "quotes or control characters\n";

// The runner on a pseudo-terminal (its standard input and error stream),
// with its standard output in a file so that the terminal shows only the
// questions, the echo of what is typed and the reasons.
class Terminal {
public:
    Terminal(const Workbench& bench, const std::vector<std::string>& args) {
        std::string outPath = bench.File("terminal.out");
        child_ = ::forkpty(&master_, nullptr, nullptr, nullptr);
        if (child_ == 0) {
            int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
            if (out < 0) std::_Exit(126);
            ::dup2(out, STDOUT_FILENO);
            ExecRunner(args, {bench.Folder(), false});
        }
    }
    ~Terminal() {
        if (master_ >= 0) ::close(master_);
    }

    // Reads until the screen so far ends with the text (line ends as the
    // program wrote them); false when it does not within ten seconds.
    bool WaitFor(const std::string& ending) {
        auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!EndsWith(Screen(), ending)) {
            if (std::chrono::steady_clock::now() > deadline || !ReadSome()) return false;
        }
        return true;
    }
    void Type(const std::string& line) { ASSERT_EQ(::write(master_, line.data(), line.size()), ssize_t(line.size())); }
    int Wait() {
        while (ReadSome()) {
        }
        int status = 0;
        ::waitpid(child_, &status, 0);
        return ExitStatus(status);
    }
    // What the terminal showed, with its CR LF line ends read as LF.
    std::string Screen() const {
        std::string text;
        for (char c : raw_) {
            if (c != '\r') text += c;
        }
        return text;
    }

private:
    static bool EndsWith(const std::string& text, const std::string& ending) {
        return text.size() >= ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
    }
    // False once the runner has closed the terminal.
    bool ReadSome() {
        pollfd ready{master_, POLLIN, 0};
        if (::poll(&ready, 1, 10000) <= 0) return false;
        char buffer[4096];
        ssize_t count = ::read(master_, buffer, sizeof buffer);
        if (count <= 0) return false;
        raw_.append(buffer, static_cast<size_t>(count));
        return true;
    }

    int master_ = -1;
    pid_t child_ = -1;
    std::string raw_;
};

TEST(TerminalQuestion, RefusesAnIdentifierWithAQuoteAndAsksAgainBeforeTheFirstUpgrader) {
    Workbench bench;
    std::string path = bench.Sample("8.2", "repository.db");
    Terminal terminal(bench, {"upgrade", "--db", path});
    ASSERT_TRUE(terminal.WaitFor(kQuestion)) << terminal.Screen();
    // Nothing has run yet: the console has not even named the repository.
    EXPECT_EQ(ReadWholeFile(bench.File("terminal.out")), "");
    terminal.Type("O'Brien\n");
    ASSERT_TRUE(terminal.WaitFor(std::string(kReason) + kQuestion)) << terminal.Screen();
    terminal.Type("REPO-9\n");
    EXPECT_EQ(terminal.Wait(), 0) << terminal.Screen();

    EXPECT_EQ(terminal.Screen(), std::string(kQuestion) + "O'Brien\n" + kReason + kQuestion + "REPO-9\n");
}

}  // namespace
}  // namespace kdhost::testing
