// Per-thread error information beside failed results.
#include "platform/com/error_info.h"

#include <utility>

namespace com {

namespace {

struct StoredError {
    bool present = false;
    HRESULT hr = S_OK;
    ErrorInfo info;
};

StoredError& ThreadError() {
    thread_local StoredError stored;
    return stored;
}

}  // namespace

HRESULT SetErrorInfo(const ErrorInfo& info) {
    StoredError& stored = ThreadError();
    stored.present = true;
    stored.hr = HResultFromBasicError(info.number);
    stored.info = info;
    return stored.hr;
}

HRESULT SetCurrentErrorInfo() {
    const automation::BasicError e = automation::CurrentError();
    return SetErrorInfo({e.Number(), e.Source(), e.Description()});
}

void ClearErrorInfo() { ThreadError() = StoredError{}; }

ErrorInfo TakeErrorInfo() {
    StoredError& stored = ThreadError();
    ErrorInfo info = std::move(stored.info);
    ClearErrorInfo();
    return info;
}

std::string DescribeHResult(HRESULT hr) {
    const int32_t number = BasicErrorFromHResult(hr);
    if (number > 0) return automation::StandardDescription(number);
    switch (static_cast<uint32_t>(hr)) {
        case 0x80004001u: return "Not implemented";
        case 0x80004002u: return "No such interface supported";
        case 0x80004003u: return "Invalid pointer";
        case 0x80004005u: return "Unspecified error";
        case 0x8007000Eu: return "Out of memory";
        case 0x80070057u: return "The parameter is incorrect";
        case 0x80040110u: return "Class does not support aggregation";
        case 0x80040111u: return "Class factory cannot supply requested class";
        case 0x80040154u: return "Class not registered";
        case 0x80040201u: return "Error in registering the class";
        default: return "Automation error";
    }
}

void Check(HRESULT hr) {
    if (Succeeded(hr)) return;
    StoredError& stored = ThreadError();
    const bool present = stored.present;
    const bool sameResult = present && stored.hr == hr;
    ErrorInfo info = TakeErrorInfo();
    if (!present) throw automation::BasicError(BasicErrorFromHResult(hr), "", DescribeHResult(hr));
    const int32_t number = sameResult && info.number != 0 ? info.number : BasicErrorFromHResult(hr);
    throw automation::BasicError(number, info.source, info.description);
}

}  // namespace com
