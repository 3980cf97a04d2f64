#pragma once
// The statements (and queries) and the row writes an upgrade has sent to
// the repository so far, counted as they pass on their way to the
// database, so that the live status line can show work going on during a
// long step.
#include "host/target.h"
#include "platform/ado/ado.h"

namespace kdhost {

struct CallCounts {
    long statements = 0;  // statements and queries
    long rowWrites = 0;   // rows added or changed through recordsets
};

// Since the process started; safe to read from any thread.
CallCounts CountedCalls();

// Opens the target for writing through a provider that counts the calls.
// Raises what opening raises.
void OpenCounted(ado::Connection* connection, const Target& target);

}  // namespace kdhost
