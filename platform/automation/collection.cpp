// Basic's Collection: 1-based positions, error 9 outside 1..Count.
#include "platform/automation/collection.h"

namespace automation {

const com::IID IID_Collection = {0xB001746F, 0x3B1E, 0x4973, {0x91, 0x33, 0x49, 0x6C, 0x6B, 0x08, 0x0C, 0x5B}};

namespace {
void CheckPosition(int32_t index, int32_t count) {
    if (index < 1 || index > count) RaiseBasic(kErrSubscriptOutOfRange);
}
}  // namespace

Variant Collection::Item(int32_t index) const {
    CheckPosition(index, Count());
    return items_[static_cast<size_t>(index - 1)];
}

void Collection::Remove(int32_t index) {
    CheckPosition(index, Count());
    items_.erase(items_.begin() + (index - 1));
}

com::ComPtr<ICollection> CollectionOf(const Variant& v) {
    if (!v.IsObject()) return nullptr;
    com::ComPtr<com::IUnknown> object = v.AsObject();
    return object.As<ICollection>(IID_Collection);
}

}  // namespace automation
