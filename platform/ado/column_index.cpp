#include "platform/ado/column_index.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ado {

using criteria::LiteralKind;
using criteria::MatchKey;

void PositionList::Insert(int32_t position) {
    if (size_ == 0) {
        one_ = position;
    } else if (size_ == 1) {
        many_ = position < one_ ? std::vector<int32_t>{position, one_} : std::vector<int32_t>{one_, position};
    } else {
        many_.insert(std::lower_bound(many_.begin(), many_.end(), position), position);
    }
    ++size_;
}

void PositionList::Erase(int32_t position) {
    if (size_ == 0) return;
    if (size_ == 1) {
        if (one_ == position) size_ = 0;
        return;
    }
    auto at = std::lower_bound(many_.begin(), many_.end(), position);
    if (at == many_.end() || *at != position) return;
    many_.erase(at);
    if (--size_ == 1) {
        one_ = many_.front();
        many_ = {};
    }
}

size_t ColumnIndex::NumberHash::operator()(double key) const noexcept {
    // Identifiers are whole numbers, read and added in ascending order, and
    // mostly looked up in the order they were added: hashed to themselves,
    // neighbouring keys land in neighbouring buckets, which stay in the
    // processor's cache. Other numbers mix the bits of their representation.
    if (key >= -9.0e18 && key <= 9.0e18 && key == std::floor(key))
        return static_cast<size_t>(static_cast<int64_t>(key));
    uint64_t bits = 0;
    std::memcpy(&bits, &key, sizeof bits);
    bits ^= bits >> 33;
    bits *= 0xff51afd7ed558ccdULL;
    bits ^= bits >> 33;
    return static_cast<size_t>(bits);
}

ColumnIndex::ColumnIndex(const std::vector<Row>& rows, int column, bool dateKeys)
    : kind_(dateKeys ? LiteralKind::kDate : LiteralKind::kNumber) {
    for (size_t p = 0; p < rows.size(); ++p) Append(static_cast<int32_t>(p), rows[p][static_cast<size_t>(column)]);
}

template <typename Index>
auto* ColumnIndex::ListIn(Index& index, const MatchKey& key) {
    using List = decltype(&index.numbers_.begin()->second);
    if (const double* number = std::get_if<double>(&key)) {
        auto found = index.numbers_.empty() ? index.numbers_.end() : index.numbers_.find(*number);
        return found == index.numbers_.end() ? List{} : &found->second;
    }
    if (const std::string* text = std::get_if<std::string>(&key)) {
        auto found = index.texts_.empty() ? index.texts_.end() : index.texts_.find(*text);
        return found == index.texts_.end() ? List{} : &found->second;
    }
    return List{};
}

PositionList& ColumnIndex::ListToAdd(MatchKey key) {
    if (const double* number = std::get_if<double>(&key)) return numbers_[*number];
    return texts_[std::move(std::get<std::string>(key))];
}

const PositionList* ColumnIndex::Find(const MatchKey& key) const {
    const PositionList* list = ListIn(*this, key);
    return list && !list->empty() ? list : nullptr;
}

void ColumnIndex::Append(int32_t position, const automation::Variant& value) {
    MatchKey key = criteria::FieldKey(value, kind_);
    if (!std::holds_alternative<std::monostate>(key)) ListToAdd(std::move(key)).Insert(position);
}

void ColumnIndex::Replace(int32_t position, const automation::Variant& before, const automation::Variant& after) {
    MatchKey oldKey = criteria::FieldKey(before, kind_);
    MatchKey newKey = criteria::FieldKey(after, kind_);
    if (oldKey == newKey) return;
    if (PositionList* list = ListIn(*this, oldKey)) list->Erase(position);
    if (!std::holds_alternative<std::monostate>(newKey)) ListToAdd(std::move(newKey)).Insert(position);
}

}  // namespace ado
