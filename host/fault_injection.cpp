#include "host/fault_injection.h"

#include <signal.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "host/provider_tap.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace kdhost {

namespace {

// SQLite's number for a disk I/O error: what a failing disk gives.
constexpr int32_t kInjectedNativeError = 10;

// One line per call: line breaks inside a statement become blanks.
std::string OneLine(const std::string& text) {
    std::string line = text;
    for (char& c : line) {
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    }
    return line;
}

class FaultHook {
public:
    FaultHook(long failAt, long killAt, int killSignal, std::string tracePath)
        : failAt_(failAt), killAt_(killAt), killSignal_(killSignal), tracePath_(std::move(tracePath)) {}

    void operator()(TappedCall call, const std::string& text) {
        ++calls_;
        if (calls_ == killAt_) Kill();
        bool inject = calls_ == failAt_;
        Trace(call, text, inject);
        if (inject) {
            throw ado::ProviderError(ado::kSqliteProviderName, kInjectedNativeError, InjectedFaultMessage(calls_));
        }
    }

private:
    void Kill() const {
        if (killSignal_ == 0 || killSignal_ == SIGKILL) std::raise(SIGKILL);
        // The runner's own thread for signals handles it and ends the
        // process; this thread stays where it is meanwhile.
        ::kill(::getpid(), killSignal_);
        for (;;) ::pause();
    }

    void Trace(TappedCall call, const std::string& text, bool injected) {
        if (tracePath_.empty()) return;
        // Opened per call, so that a killed run leaves every line written.
        if (std::FILE* out = std::fopen(tracePath_.c_str(), "a")) {
            std::fprintf(out, "%ld\t%s\t%s%s\n", calls_, TappedCallName(call), OneLine(text).c_str(),
                         injected ? "\tinjected" : "");
            std::fclose(out);
        }
    }

    long failAt_;
    long killAt_;
    int killSignal_;
    std::string tracePath_;
    long calls_ = 0;
};

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::string InjectedFaultMessage(long call) {
    return "disk I/O error (injected fault at call " + std::to_string(call) + ")";
}

CallListener TestHookListener() {
    std::string failAt = Variable(kFaultAtVariable);
    std::string killAt = Variable(kKillAtVariable);
    std::string tracePath = Variable(kFaultTraceVariable);
    if (failAt.empty() && killAt.empty() && tracePath.empty()) return nullptr;
    auto hook = std::make_shared<FaultHook>(std::atol(failAt.c_str()), std::atol(killAt.c_str()),
                                            std::atoi(Variable(kKillSignalVariable).c_str()), tracePath);
    return [hook](TappedCall call, const std::string& text) { (*hook)(call, text); };
}

bool OpenWithTestHook(ado::Connection* connection, const Target& target, bool readOnly) {
    CallListener hook = TestHookListener();
    if (!hook) return false;
    connection->OpenWith(TapProvider(ado::OpenProvider(target.ConnectionString(readOnly)), std::move(hook)));
    return true;
}

}  // namespace kdhost
