#pragma once
// A hash index of one column of a client-side recordset: match key ->
// positions of the rows holding it, in ascending order. It lets Find and
// Filter answer equality criteria without scanning the rows, and is kept
// current as rows are written and added.
//
// A recordset filtered row by row on an identifier (one Filter per row of
// another table) looks up and adds a key per row, so numbers and texts have
// maps of their own with plain keys, and a key held by one row keeps its
// position without a vector of its own.
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/ado/criteria.h"
#include "platform/automation/variant.h"

namespace ado {

// Ascending positions; the first one is held inline while it is the only one.
class PositionList {
public:
    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const int32_t* begin() const { return size_ <= 1 ? &one_ : many_.data(); }
    const int32_t* end() const { return begin() + size_; }
    void Insert(int32_t position);
    void Erase(int32_t position);

private:
    int32_t one_ = 0;
    uint32_t size_ = 0;
    std::vector<int32_t> many_;  // every position, while there are two or more
};

class ColumnIndex {
public:
    using Row = std::vector<automation::Variant>;

    // Indexes column of every row; dateKeys: keys as compared with dates.
    ColumnIndex(const std::vector<Row>& rows, int column, bool dateKeys);

    // Positions of rows whose key equals key; null when none.
    const PositionList* Find(const criteria::MatchKey& key) const;
    // A row was appended at position (the largest so far).
    void Append(int32_t position, const automation::Variant& value);
    // The row at position changed its value in this column.
    void Replace(int32_t position, const automation::Variant& before, const automation::Variant& after);

private:
    struct NumberHash {
        size_t operator()(double key) const noexcept;
    };
    // The list of key in index (const or not); null when the key has none.
    template <typename Index>
    static auto* ListIn(Index& index, const criteria::MatchKey& key);
    PositionList& ListToAdd(criteria::MatchKey key);

    criteria::LiteralKind kind_;
    std::unordered_map<double, PositionList, NumberHash> numbers_;
    std::unordered_map<std::string, PositionList> texts_;
};

}  // namespace ado
