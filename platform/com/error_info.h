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
// Forgets any failure stored for this thread. Every boundary does this on
// entry, so that a failure nobody collected is not blamed on a later call
// that fails without info of its own.
void ClearErrorInfo();

// Stores the exception in flight (call only inside a catch block) as this
// thread's error info and returns the failed result for it.
HRESULT SetCurrentErrorInfo();

// Runs body, which returns its own result; an exception becomes a failed
// HRESULT with the error info set.
template <class F>
HRESULT GuardResult(F&& body) noexcept {
    ClearErrorInfo();
    try {
        return body();
    } catch (...) {
        return SetCurrentErrorInfo();
    }
}

// Runs body; a BasicError (or any exception) becomes a failed HRESULT with
// the error info set. Used at every interface boundary a component exposes.
template <class F>
HRESULT Guard(F&& body) noexcept {
    return GuardResult([&]() -> HRESULT {
        body();
        return S_OK;
    });
}

// What a Basic caller does with a failed call: raise the failure with the
// number the HRESULT gives and the source and description of the stored
// info (so a callee may return a result of its own beside the reason it
// stored). Info stored for this very HRESULT also gives the number (which
// keeps numbers that have no HRESULT of their own). Without info the
// description is the HRESULT's generic one.
void Check(HRESULT hr);

// A readable description of a failure result: Basic's standard description
// for its own numbers, a short text for the runtime's results, otherwise
// "Automation error".
std::string DescribeHResult(HRESULT hr);

}  // namespace com
