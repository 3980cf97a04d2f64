// The identifiers of the base interfaces and the mapping between Basic's
// error numbers and failure results.
#include "platform/com/unknown.h"

namespace com {

// Brace-initialised so that they are constant before any static initialiser
// of another file uses them.
const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
const IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

namespace {
constexpr uint32_t kFacilityControl = 0x800A0000u;
}

HRESULT HResultFromBasicError(int32_t number) {
    if (number < 0) return number;
    if (number > 0 && number <= 0xFFFF) return static_cast<HRESULT>(kFacilityControl | static_cast<uint32_t>(number));
    // 0 and numbers beyond 16 bits have no result of their own.
    return E_FAIL;
}

int32_t BasicErrorFromHResult(HRESULT hr) {
    const uint32_t bits = static_cast<uint32_t>(hr);
    if ((bits & 0xFFFF0000u) == kFacilityControl) return static_cast<int32_t>(bits & 0xFFFFu);
    return hr;
}

}  // namespace com
