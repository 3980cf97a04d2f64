#pragma once
// Basic's Collection: an ordered, 1-based list of Variants; the library adds
// items without keys.
#include <vector>

#include "platform/automation/variant.h"
#include "platform/com/unknown.h"

namespace automation {

extern const com::IID IID_Collection;
struct ICollection : com::IUnknown {
    virtual int32_t Count() const = 0;
    // 1-based; an index outside 1..Count raises error 9.
    virtual Variant Item(int32_t index) const = 0;
    virtual void Add(const Variant& item) = 0;
    virtual void Remove(int32_t index) = 0;
};

class Collection;
}  // namespace automation

template <>
struct com::InterfaceId<automation::ICollection> {
    static const com::IID& Get() { return automation::IID_Collection; }
};

namespace automation {
class Collection : public com::Object<Collection, ICollection> {
public:
    int32_t Count() const override { return static_cast<int32_t>(items_.size()); }
    Variant Item(int32_t index) const override;
    void Add(const Variant& item) override { items_.push_back(item); }
    void Remove(int32_t index) override;

private:
    std::vector<Variant> items_;
};

// The collection held by a Variant, or null when it holds none.
com::ComPtr<ICollection> CollectionOf(const Variant& v);

}  // namespace automation
