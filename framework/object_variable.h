#pragma once
// Use of an object variable that holds nothing fails as Basic's error 91
// ("Object variable or With block variable not set") instead of crashing.
#include "framework/mod_kd_startup.h"
#include "platform/automation/basic_error.h"

namespace kdvq {

template <class T>
T& Deref(T* object) {
    if (!object) automation::RaiseBasic(automation::kErrObjectVariableNotSet, kSource);
    return *object;
}

}  // namespace kdvq
