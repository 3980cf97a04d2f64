#pragma once
// Failures as one comparable line: "number|source|description".
#include <functional>
#include <string>

#include "platform/automation/basic_error.h"
#include "platform/com/error_info.h"

namespace fixture {

// What action raises, or "nothing".
inline std::string RaisedBy(const std::function<void()>& action) {
    try {
        action();
        return "nothing";
    } catch (const automation::BasicError& e) {
        return std::to_string(e.Number()) + "|" + e.Source() + "|" + e.Description();
    }
}

// What a Basic caller raises for the result hr.
inline std::string RaisedFor(com::HRESULT hr) {
    return RaisedBy([hr] { com::Check(hr); });
}

}  // namespace fixture
