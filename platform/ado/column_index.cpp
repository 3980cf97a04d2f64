#include "platform/ado/column_index.h"

#include <algorithm>

namespace ado {

using criteria::LiteralKind;
using criteria::MatchKey;

ColumnIndex::ColumnIndex(const std::vector<Row>& rows, int column, bool dateKeys)
    : kind_(dateKeys ? LiteralKind::kDate : LiteralKind::kNumber) {
    for (size_t p = 0; p < rows.size(); ++p) Append(static_cast<int32_t>(p), rows[p][static_cast<size_t>(column)]);
}

MatchKey ColumnIndex::KeyOf(const automation::Variant& value) const { return criteria::FieldKey(value, kind_); }

const std::vector<int32_t>* ColumnIndex::Find(const MatchKey& key) const {
    auto found = positions_.find(key);
    return found == positions_.end() || found->second.empty() ? nullptr : &found->second;
}

void ColumnIndex::Append(int32_t position, const automation::Variant& value) {
    MatchKey key = KeyOf(value);
    if (!std::holds_alternative<std::monostate>(key)) positions_[std::move(key)].push_back(position);
}

void ColumnIndex::Replace(int32_t position, const automation::Variant& before, const automation::Variant& after) {
    MatchKey oldKey = KeyOf(before);
    MatchKey newKey = KeyOf(after);
    if (oldKey == newKey) return;
    auto found = positions_.find(oldKey);
    if (found != positions_.end()) {
        std::vector<int32_t>& list = found->second;
        auto at = std::lower_bound(list.begin(), list.end(), position);
        if (at != list.end() && *at == position) list.erase(at);
    }
    if (std::holds_alternative<std::monostate>(newKey)) return;
    std::vector<int32_t>& list = positions_[std::move(newKey)];
    list.insert(std::lower_bound(list.begin(), list.end(), position), position);
}

}  // namespace ado
