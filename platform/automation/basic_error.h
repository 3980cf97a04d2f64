#pragma once
// A run-time failure as Basic code sees it: the Err object's number, source,
// description and the line number of the failing statement (0 when none).
#include <cstdint>
#include <stdexcept>
#include <string>

namespace automation {

// Basic's own error numbers that the library and its platform raise.
enum BasicErrorNumber : int32_t {
    kErrOverflow = 6,
    kErrOutOfMemory = 7,
    kErrSubscriptOutOfRange = 9,
    kErrTypeMismatch = 13,
    kErrInvalidUseOfNull = 94,
    kErrObjectRequired = 424,
    kErrAutomation = 440,
    kErrKeyAlreadyExists = 457,
    kErrInvalidProcedureCall = 5,
    kErrObjectVariableNotSet = 91,
    // Raised by the component runtime and the Dictionary.
    kErrDllLoad = 48,
    kErrPathFileAccess = 75,
    kErrInvalidFileFormat = 321,
    kErrDllEntryPoint = 453,
    kErrElementNotFound = 32811,
};

class BasicError : public std::runtime_error {
public:
    BasicError(int32_t number, std::string source, std::string description, int32_t line = 0)
        : std::runtime_error(description),
          number_(number),
          source_(std::move(source)),
          description_(std::move(description)),
          line_(line) {}

    int32_t Number() const { return number_; }
    const std::string& Source() const { return source_; }
    const std::string& Description() const { return description_; }
    // Line number of the statement that failed (Basic's Erl); 0 when the
    // routine does not number its lines.
    int32_t Line() const { return line_; }
    BasicError WithLine(int32_t line) const { return BasicError(number_, source_, description_, line); }

private:
    int32_t number_;
    std::string source_;
    std::string description_;
    int32_t line_;
};

// The standard description Basic gives its own error numbers.
std::string StandardDescription(int32_t number);
// Raise one of Basic's own errors with its standard description.
[[noreturn]] void RaiseBasic(int32_t number, const std::string& source = "");

// Turns whatever exception is in flight into a BasicError (for handlers that
// must treat every failure alike). Must be called inside a catch block.
BasicError CurrentError();

}  // namespace automation
