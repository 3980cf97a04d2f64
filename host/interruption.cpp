#include "host/interruption.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>
#include <thread>

#include "host/log_sink.h"
#include "platform/ado/ado.h"

namespace kdhost::interruption {

namespace {

struct State {
    std::mutex mutex;
    ado::Connection* connection = nullptr;
    bool connected = false;  // a connection was set at some point: the repository may have changed
    std::string upgrader;
    bool inTransaction = false;
    LogSink* log = nullptr;
    std::function<void()> cleanup;
};

State& Current() {
    static State* state = new State();  // outlives every other static: the waiting thread may use it at exit
    return *state;
}

sigset_t Signals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

const char* SignalName(int signal) { return signal == SIGINT ? "SIGINT" : signal == SIGTERM ? "SIGTERM" : "a signal"; }

// Never returns: the state's lock is kept, so that the command's thread can
// change nothing more while the process ends.
[[noreturn]] void Interrupted(int signal) {
    State& state = Current();
    state.mutex.lock();
    bool takenBack = state.connection && state.connection->Abandon();
    if (state.cleanup) state.cleanup();
    std::string message =
        Message(signal, state.upgrader, state.connected, takenBack && state.inTransaction);
    std::fflush(stdout);
    if (state.log) state.log->Write("kdvq-upgrade: " + message, kLogFailure);
    std::string line = "kdvq-upgrade: " + message + "\n";
    ssize_t ignored = ::write(STDERR_FILENO, line.data(), line.size());
    (void)ignored;
    std::fflush(nullptr);
    ::_exit(128 + signal);
}

void Wait() {
    sigset_t set = Signals();
    int signal = 0;
    while (sigwait(&set, &signal) != 0) {
    }
    Interrupted(signal);
}

}  // namespace

void Start() {
    static std::once_flag started;
    std::call_once(started, [] {
        sigset_t set = Signals();
        pthread_sigmask(SIG_BLOCK, &set, nullptr);
        std::thread(Wait).detach();
    });
}

void SetConnection(ado::Connection* connection) {
    std::lock_guard<std::mutex> lock(Current().mutex);
    Current().connection = connection;
    Current().connected = Current().connected || connection;
}

void SetUpgrader(const std::string& className, bool inTransaction) {
    std::lock_guard<std::mutex> lock(Current().mutex);
    Current().upgrader = className;
    Current().inTransaction = inTransaction;
}

void SetLog(LogSink* log) {
    std::lock_guard<std::mutex> lock(Current().mutex);
    Current().log = log;
}

void SetCleanup(std::function<void()> cleanup) {
    std::lock_guard<std::mutex> lock(Current().mutex);
    Current().cleanup = std::move(cleanup);
}

std::string Message(int signal, const std::string& className, bool connected, bool takenBack) {
    std::string head = std::string("interrupted by ") + SignalName(signal);
    const std::string again = " Run the upgrade again to finish it.";
    if (!connected) return head + "; the repository was not changed.";
    if (className.empty()) return head + " between two upgraders; those that finished are kept." + again;
    if (takenBack) return head + " while " + className + " was running; its changes were taken back." + again;
    return head + " while " + className + " was running without a transaction; its changes so far are kept." +
           again;
}

}  // namespace kdhost::interruption
