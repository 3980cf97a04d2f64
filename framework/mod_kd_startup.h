#pragma once
// Per-thread start-up of the library and the one routine through which
// every failure is logged and, where asked, raised again.
#include <cstdint>
#include <string>

#include "framework/host_interfaces.h"
#include "platform/automation/basic_error.h"
#include "platform/com/unknown.h"

namespace kdvq {

// The source every report of the library names.
inline const std::string kSource = "kdVqUpgraders";
inline const std::string kCrLf = "\r\n";

struct Globals {
    com::ComPtr<IKDLogger> logger;
    std::string build;  // "major.minor.revision" of the library
    com::ComPtr<IKDResourceStrings> resources;

    // True until start-up has created anything on this thread.
    bool Empty() const { return !logger && build.empty() && !resources; }
};

// This thread's globals (empty until kdMain ran on the thread).
Globals& ThreadGlobals();

// Start-up routine, run once per thread before the first object.
void kdMain();
// Creates the globals for the library called name.
void InitGlobals(const std::string& name);
// The library's own version text, major.minor.revision.
std::string LibraryVersion();

// Logs source + ":" + CR LF + message with level; when a line number is
// given (non-zero) the message gains the line and build suffix first. With
// level 1 and raise true the failure (number, saved source, extended
// message) is raised again as a BasicError.
void ReportError(std::string& message, std::string& source, bool raise, int32_t level,
                 const automation::BasicError& current);

// The common error handler body: reports the failure in flight (call only
// inside a catch block) with message tag + CR LF + description + extra,
// source "kdVqUpgraders". Raises again when raise is true and level is 1.
void HandleFailure(const std::string& tag, bool raise = true, int32_t level = 1, int32_t line = 0,
                   const std::string& extra = "");

// Reports the failure in flight (call only inside a catch block) with a
// message the caller composed whole, source "kdVqUpgraders"; line is the
// number of the failing step (0 when the routine numbers none).
void ReportFailure(std::string message, bool raise, int32_t level, int32_t line = 0);

}  // namespace kdvq
