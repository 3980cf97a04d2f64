#pragma once
// What the runner does when SIGINT or SIGTERM arrives: a thread of its own
// waits for them (they are blocked everywhere else), takes back the
// transaction of the upgrader that was running, removes what the command
// made for itself (plan's temporary copy), says what happened and ends the
// process with 128 + the signal's number. The command tells it, as it
// goes, which connection and which upgrader are current.
#include <functional>
#include <string>

namespace ado {
class Connection;
}

namespace kdhost {

class LogSink;

namespace interruption {

// Blocks the two signals in this thread and in every thread it starts
// later, and starts the waiting thread. Call once, before other threads.
void Start();

// The connection whose open transaction a signal takes back; null: none
// (set it to null before the connection closes).
void SetConnection(ado::Connection* connection);
// The upgrader whose work the open transaction holds; "" between them.
// Whether its work can be taken back (false when it runs without a
// transaction).
void SetUpgrader(const std::string& className, bool inTransaction);
// Where the interruption is logged; null: nowhere.
void SetLog(LogSink* log);
// Run on a signal, e.g. to remove a temporary folder; empty: nothing.
void SetCleanup(std::function<void()> cleanup);

// The text the runner ends with on a signal.
std::string Message(int signal, const std::string& className, bool connected, bool takenBack);

}  // namespace interruption
}  // namespace kdhost
