#pragma once
// The EXTRA_DATA text of a session modification moved into the history.
#include <string>

#include "platform/automation/variant.h"

namespace kdvq {

// "<NEW_STATE>" + the state as text + "<\NEW_STATE>". The closing tag is
// written with a backslash: readers of EXTRA_DATA expect exactly this pair.
// A Null state joins as nothing, as text concatenation treats Null.
std::string NewStateText(const automation::Variant& state);

}  // namespace kdvq
