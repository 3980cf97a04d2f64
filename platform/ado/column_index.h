#pragma once
// A hash index of one column of a client-side recordset: match key ->
// positions of the rows holding it, in ascending order. It lets Find and
// Filter answer equality criteria without scanning the rows, and is kept
// current as rows are written and added.
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/ado/criteria.h"
#include "platform/automation/variant.h"

namespace ado {

class ColumnIndex {
public:
    using Row = std::vector<automation::Variant>;

    // Indexes column of every row; dateKeys: keys as compared with dates.
    ColumnIndex(const std::vector<Row>& rows, int column, bool dateKeys);

    // Positions of rows whose key equals key (sorted); null when none.
    const std::vector<int32_t>* Find(const criteria::MatchKey& key) const;
    // A row was appended at position (the largest so far).
    void Append(int32_t position, const automation::Variant& value);
    // The row at position changed its value in this column.
    void Replace(int32_t position, const automation::Variant& before, const automation::Variant& after);

private:
    criteria::MatchKey KeyOf(const automation::Variant& value) const;

    criteria::LiteralKind kind_;
    std::unordered_map<criteria::MatchKey, std::vector<int32_t>, criteria::MatchKeyHash> positions_;
};

}  // namespace ado
