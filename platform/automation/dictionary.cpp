// The Dictionary: insertion-ordered keys with an index from each key's
// normalised form to its position.
#include "platform/automation/dictionary.h"

#include <cctype>
#include <cstdio>

namespace automation {

const com::IID IID_Dictionary = {0x959F34A9, 0xD8D5, 0x4842, {0x8C, 0x2A, 0x2F, 0x45, 0x6C, 0xB6, 0x2A, 0x5E}};

com::ComPtr<Dictionary> Dictionary::Create(CompareMode mode) { return com::ComPtr<Dictionary>(new Dictionary(mode)); }

com::HRESULT Dictionary::QueryInterface(com::REFIID iid, void** out) {
    if (!out) return com::E_POINTER;
    *out = nullptr;
    if (iid != com::IID_IUnknown && iid != IID_Dictionary) return com::E_NOINTERFACE;
    *out = static_cast<com::IUnknown*>(this);
    AddRef();
    return com::S_OK;
}

void Dictionary::SetCompareMode(CompareMode mode) {
    if (!keys_.empty()) RaiseBasic(kErrInvalidProcedureCall);
    mode_ = mode;
}

// The form under which a key is indexed. Each kind of key gets its own
// prefix so that 1 and "1" stay different keys, while numbers of different
// widths (Integer 1, Long 1, Double 1) are the same key.
std::string Dictionary::Normalise(const Variant& key) const {
    switch (key.Type()) {
        case vtEmpty: return "e:";
        case vtNull: return "z:";
        case vtInteger:
        case vtLong:
        case vtDouble: {
            char buf[40];
            std::snprintf(buf, sizeof buf, "n:%.17g", key.CDbl());
            return buf;
        }
        case vtBoolean: return key.CBool() ? "b:1" : "b:0";
        case vtDate: {
            char buf[40];
            std::snprintf(buf, sizeof buf, "d:%.17g", key.CDate());
            return buf;
        }
        case vtString: {
            std::string text = "s:" + key.AsString();
            if (mode_ == CompareMode::Text) {
                for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            }
            return text;
        }
        case vtObject: {
            char buf[40];
            std::snprintf(buf, sizeof buf, "o:%p", static_cast<const void*>(key.AsObject().Get()));
            return buf;
        }
        default: RaiseBasic(kErrTypeMismatch);  // arrays cannot be keys
    }
}

void Dictionary::Add(const Variant& key, const Variant& item) {
    std::string normal = Normalise(key);
    if (index_.count(normal)) RaiseBasic(kErrKeyAlreadyExists);
    index_.emplace(std::move(normal), keys_.size());
    keys_.push_back(key);
    items_.push_back(item);
}

bool Dictionary::Exists(const Variant& key) const { return index_.count(Normalise(key)) != 0; }

Variant& Dictionary::Item(const Variant& key) {
    auto found = index_.find(Normalise(key));
    if (found != index_.end()) return items_[found->second];
    Add(key, Variant());
    return items_.back();
}

const Variant* Dictionary::Lookup(const Variant& key) const {
    auto found = index_.find(Normalise(key));
    return found == index_.end() ? nullptr : &items_[found->second];
}

void Dictionary::Remove(const Variant& key) {
    auto found = index_.find(Normalise(key));
    if (found == index_.end()) RaiseBasic(kErrElementNotFound);
    const size_t position = found->second;
    index_.erase(found);
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(position));
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(position));
    for (auto& entry : index_) {
        if (entry.second > position) --entry.second;
    }
}

void Dictionary::RemoveAll() {
    keys_.clear();
    items_.clear();
    index_.clear();
}

}  // namespace automation
