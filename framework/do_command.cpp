// One statement with progress reporting; errors that mean the change is
// already in place count as success.
#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "framework/object_variable.h"

namespace kdvq {

bool IsToleratedNativeError(int32_t nativeError) {
    switch (nativeError) {
        case 1442:  // column to be modified to NOT NULL is already NOT NULL
        case 2256:  // constraint already exists
        case 2260:  // table can have only one primary key
        case 2261:  // such unique or primary key already exists
            return true;
        default:
            return false;
    }
}

namespace {

bool AnyToleratedError(const ado::Errors& errors) {
    for (int32_t i = 0; i < errors.Count(); ++i) {
        if (IsToleratedNativeError(errors.Item(i).nativeError)) return true;
    }
    return false;
}

}  // namespace

bool DoCommand(ado::Connection* connection, const std::string& sql, const std::string& progressText,
               IKDProgressCallback* callback, bool silent) {
    try {
        if (!silent) StepStarting(callback, progressText);
        Deref(connection).Execute(sql, ado::adOptionUnspecified);
        if (!silent) StepFinished(callback, LoadResString(102));
        return true;
    } catch (...) {
        automation::BasicError failure = automation::CurrentError();
        const bool alreadyApplied = AnyToleratedError(Deref(connection).GetErrors());
        ReportFailure("modMain::DoCommand" + kCrLf + std::to_string(failure.Number()) + ": " +
                          failure.Description() + kCrLf + "Command: " + sql,
                      false, alreadyApplied ? 2 : 1);
        return alreadyApplied;
    }
}

}  // namespace kdvq
