#include "platform/ado/ado_errors.h"

#include "platform/ado/ado.h"
#include "platform/automation/basic_error.h"

namespace ado {

std::string AdoDescription(int32_t number) {
    switch (number) {
        case adErrNoCurrentRecord:
            return "Either BOF or EOF is True, or the current record has been deleted. "
                   "Requested operation requires a current record.";
        case adErrItemNotFound:
            return "Item cannot be found in the collection corresponding to the requested name or ordinal.";
        case adErrObjectClosed:
            return "Operation is not allowed when the object is closed.";
        case adErrObjectOpen:
            return "Operation is not allowed when the object is open.";
        case adErrFeatureNotAvailable:
            return "Object or provider is not capable of performing requested operation.";
        case adErrIllegalOperation:
            return "Operation is not allowed in this context.";
        case adErrInvalidArgument:
            return "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another.";
        case adErrNoTransaction:
            return "No transaction is active.";
        case adErrProviderFailed:
            return "Unspecified error";
        default:
            return "Errors occurred";
    }
}

void RaiseAdo(int32_t number, const char* source, const std::string& description) {
    throw automation::BasicError(number, source, description.empty() ? AdoDescription(number) : description);
}

}  // namespace ado
