// The host services every routine uses: resource strings and the progress
// callback's two operations.
#include "framework/mod_main.h"
#include "framework/object_variable.h"
#include "platform/com/error_info.h"

namespace kdvq {

std::string LoadResString(int32_t id, std::initializer_list<Variant> values) {
    // A Basic array of the substitution values; no values is the empty
    // array with bounds 0 to -1.
    VariantArray array;
    array.lowerBound = 0;
    array.items.assign(values.begin(), values.end());
    std::string text;
    com::Check(Deref(ThreadGlobals().resources.Get()).GetString(id, array, &text));
    return text;
}

void StepStarting(IKDProgressCallback* callback, const std::string& text) {
    com::Check(Deref(callback).StepStarting(text));
}

void StepFinished(IKDProgressCallback* callback, const std::string& text) {
    com::Check(Deref(callback).StepFinished(text));
}

}  // namespace kdvq
