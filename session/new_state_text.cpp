#include "session/new_state_text.h"

namespace kdvq {

std::string NewStateText(const automation::Variant& state) {
    return "<NEW_STATE>" + (state.IsNull() ? std::string() : state.CStr()) + "<\\NEW_STATE>";
}

}  // namespace kdvq
