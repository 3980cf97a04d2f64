#pragma once
// A problem with what the runner was given (a missing or unusable
// repository, a malformed option): reported in one line, exit status 2.
#include <stdexcept>
#include <string>

namespace kdhost {

struct BadInput : std::runtime_error {
    explicit BadInput(const std::string& reason) : std::runtime_error(reason) {}
};

// Exit statuses of the runner.
enum ExitStatus : int { kExitSuccess = 0, kExitUpgradeFailed = 1, kExitBadInput = 2 };

}  // namespace kdhost
