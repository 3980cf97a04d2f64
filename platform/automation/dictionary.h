#pragma once
// The Scripting Runtime's Dictionary: keys kept in insertion order, binary
// (case-sensitive) or text (case-insensitive) comparison of text keys.
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/automation/variant.h"
#include "platform/com/unknown.h"

namespace automation {

enum class CompareMode { Binary = 0, Text = 1 };

extern const com::IID IID_Dictionary;
class Dictionary;
}  // namespace automation

namespace automation {

class Dictionary : public com::ComObjectBase, public com::IUnknown {
public:
    explicit Dictionary(CompareMode mode = CompareMode::Binary) : mode_(mode) {}
    static com::ComPtr<Dictionary> Create(CompareMode mode = CompareMode::Binary);

    com::HRESULT QueryInterface(com::REFIID iid, void** out) override;
    com::ULONG AddRef() override { return InternalAddRef(); }
    com::ULONG Release() override { return InternalRelease(); }

    // Changing the mode of a non-empty dictionary raises error 5.
    void SetCompareMode(CompareMode mode);
    CompareMode GetCompareMode() const { return mode_; }

    // Raises 457 when the key exists.
    void Add(const Variant& key, const Variant& item);
    bool Exists(const Variant& key) const;
    // Reading a missing key adds it with an Empty item (and returns Empty).
    Variant& Item(const Variant& key);
    // Reads without adding; nullptr when missing.
    const Variant* Lookup(const Variant& key) const;
    void Remove(const Variant& key);
    void RemoveAll();
    int32_t Count() const { return static_cast<int32_t>(keys_.size()); }
    // 0-based arrays of the keys and items, in insertion order.
    const std::vector<Variant>& Keys() const { return keys_; }
    const std::vector<Variant>& Items() const { return items_; }

private:
    std::string Normalise(const Variant& key) const;
    CompareMode mode_;
    std::vector<Variant> keys_;
    std::vector<Variant> items_;
    std::unordered_map<std::string, size_t> index_;
};

}  // namespace automation
