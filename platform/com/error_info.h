#pragma once
// The per-thread error information that travels beside a failed HRESULT, so
// that a caller can rebuild the failure's number, source and description.
#include <cstdint>
#include <string>

#include "platform/automation/basic_error.h"
#include "platform/com/unknown.h"

namespace com {

struct ErrorInfo {
    int32_t number = 0;
    std::string source;
    std::string description;
};

// Stores the failure for this thread and returns the HRESULT to hand back.
HRESULT SetErrorInfo(const ErrorInfo& info);
// Takes (and clears) the failure stored for this thread.
ErrorInfo TakeErrorInfo();

// Runs body; a BasicError (or any exception) becomes a failed HRESULT with
// the error info set. Used at every interface boundary a component exposes.
template <class F>
HRESULT Guard(F&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        automation::BasicError e = automation::CurrentError();
        return SetErrorInfo({e.Number(), e.Source(), e.Description()});
    }
}

// What a Basic caller does with a failed call: raise the stored failure.
// A failed HRESULT without error info is raised with the HRESULT's number.
void Check(HRESULT hr);

}  // namespace com
