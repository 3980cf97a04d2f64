// Per-thread start-up of the library and the error routine every handler
// ends in.
#include "framework/mod_kd_startup.h"

#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdvq {

namespace {

std::string Decimal(int32_t n) { return std::to_string(n); }

// An address that is certainly inside this library (a function's address
// may resolve to a stub in the program that calls it).
const char kInsideThisLibrary = 0;

// The logger is used without a check of its own, as every report relies on
// start-up having run; a missing one is Basic's "object variable not set".
IKDLogger& Logger() {
    IKDLogger* logger = ThreadGlobals().logger.Get();
    if (!logger) automation::RaiseBasic(automation::kErrObjectVariableNotSet, kSource);
    return *logger;
}

}  // namespace

Globals& ThreadGlobals() {
    thread_local Globals globals;
    return globals;
}

std::string LibraryVersion() {
    return Decimal(KDVQ_VERSION_MAJOR) + "." + Decimal(KDVQ_VERSION_MINOR) + "." + Decimal(KDVQ_VERSION_PATCH);
}

void InitGlobals(const std::string& name) {
    Globals& globals = ThreadGlobals();
    com::HRESULT hr = com::S_OK;
    globals.logger = com::CreateInstance<IKDLogger>(CLSID_KDLogger, IID_IKDLogger, &hr);
    com::Check(hr);
    globals.build = LibraryVersion();
    globals.resources = com::CreateInstance<IKDResourceStrings>(CLSID_KDResourceStrings, IID_IKDResourceStrings, &hr);
    com::Check(hr);
    com::Check(globals.resources->Initialize(name));
}

void kdMain() {
    std::string name;
    try {
        name = com::ModuleNameOf(&kInsideThisLibrary);
        InitGlobals(name);
    } catch (...) {
        automation::BasicError current = automation::CurrentError();
        std::string message = "modKDStartup::kdMain" + kCrLf + current.Description();
        ReportError(message, name, true, 1, current.WithLine(0));
    }
}

void ReportError(std::string& message, std::string& source, bool raise, int32_t level,
                 const automation::BasicError& current) {
    const int32_t savedNumber = current.Number();
    const std::string savedSource = current.Source();
    const std::string& buildText = ThreadGlobals().build;
    const std::string build = buildText.empty() ? "UNKNOWN" : buildText;

    if (current.Line() != 0) {
        message += kCrLf + "Error at line: " + Decimal(current.Line()) + " - Build: " + build;
    }
    if (source.empty()) source = "Unknown Source:";
    com::Check(Logger().Log(source + ":" + kCrLf + message, level));

    if (level == 1 && raise) throw automation::BasicError(savedNumber, savedSource, message);
}

void ReportFailure(std::string message, bool raise, int32_t level, int32_t line) {
    automation::BasicError inFlight = automation::CurrentError();
    // The line is the failing step of the reporting routine itself; a line
    // carried by a failure raised further down does not belong to it.
    automation::BasicError current(inFlight.Number(), inFlight.Source(), inFlight.Description(), line);
    std::string source = kSource;
    ReportError(message, source, raise, level, current);
}

void HandleFailure(const std::string& tag, bool raise, int32_t level, int32_t line, const std::string& extra) {
    automation::BasicError inFlight = automation::CurrentError();
    ReportFailure(tag + kCrLf + inFlight.Description() + extra, raise, level, line);
}

}  // namespace kdvq
