#pragma once
// Test hook of the runner (not for production use): with the environment
// variable KDVQ_FAULT_AT=N the N-th statement, query, row write or commit
// that the runner sends to a repository fails once, as a disk error
// would; with KDVQ_FAULT_TRACE=FILE every such call is appended to FILE as
// one line "N<TAB>kind<TAB>text", the failed one ending in "<TAB>injected";
// with KDVQ_KILL_AT=N the runner kills itself (SIGKILL) just before the
// N-th call, as a power cut or an administrator's kill would stop it, or,
// with KDVQ_KILL_SIGNAL=S as well, sends itself signal S there and waits
// for it to take effect, as an administrator's Ctrl-C or SIGTERM would.
// The reliability tests use it to interrupt an upgrade at every point and
// to check that a second run repairs what the first left.
#include <string>

#include "host/provider_tap.h"
#include "host/target.h"
#include "platform/ado/ado.h"

namespace kdhost {

// The environment variables of the hook.
inline const char kFaultAtVariable[] = "KDVQ_FAULT_AT";
inline const char kFaultTraceVariable[] = "KDVQ_FAULT_TRACE";
inline const char kKillAtVariable[] = "KDVQ_KILL_AT";
inline const char kKillSignalVariable[] = "KDVQ_KILL_SIGNAL";

// The message of the injected failure.
std::string InjectedFaultMessage(long call);

// The hook as a listener of a tapped provider; empty when no variable is
// set.
CallListener TestHookListener();

// Opens the connection through the hook when any variable is set; false
// (nothing opened) otherwise. Raises
// what opening raises.
bool OpenWithTestHook(ado::Connection* connection, const Target& target, bool readOnly);

}  // namespace kdhost
