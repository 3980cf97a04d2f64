// Basic's standard error descriptions and the conversion of any exception
// into the Err object's form.
#include "platform/automation/basic_error.h"

#include <new>

namespace automation {

std::string StandardDescription(int32_t number) {
    switch (number) {
        case kErrInvalidProcedureCall: return "Invalid procedure call or argument";
        case kErrOverflow: return "Overflow";
        case kErrOutOfMemory: return "Out of memory";
        case kErrSubscriptOutOfRange: return "Subscript out of range";
        case kErrTypeMismatch: return "Type mismatch";
        case kErrDllLoad: return "Error in loading DLL";
        case kErrPathFileAccess: return "Path/File access error";
        case kErrObjectVariableNotSet: return "Object variable or With block variable not set";
        case kErrInvalidUseOfNull: return "Invalid use of Null";
        case kErrInvalidFileFormat: return "Invalid file format";
        case kErrObjectRequired: return "Object required";
        case kErrAutomation: return "Automation error";
        case kErrDllEntryPoint: return "Specified DLL function not found";
        case kErrKeyAlreadyExists: return "This key is already associated with an element of this collection";
        case kErrElementNotFound: return "Element not found";
        default: return "Application-defined or object-defined error";
    }
}

void RaiseBasic(int32_t number, const std::string& source) {
    throw BasicError(number, source, StandardDescription(number));
}

BasicError CurrentError() {
    try {
        throw;
    } catch (const BasicError& e) {
        return e;
    } catch (const std::bad_alloc&) {
        return BasicError(kErrOutOfMemory, "", StandardDescription(kErrOutOfMemory));
    } catch (const std::exception& e) {
        return BasicError(kErrAutomation, "", e.what());
    } catch (...) {
        return BasicError(kErrAutomation, "", "Unknown failure");
    }
}

}  // namespace automation
