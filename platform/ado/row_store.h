#pragma once
// The rows of a client-side recordset, held once, with the filter's view
// of them and lazily built column indexes for equality criteria. Rows keep
// their position (order of reading, added rows at the end); the view lists
// the visible positions in ascending order.
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ado/column_index.h"
#include "platform/ado/criteria.h"
#include "platform/ado/provider.h"
#include "platform/automation/variant.h"

namespace ado {

class RowStore {
public:
    using Row = std::vector<automation::Variant>;

    void Clear();
    // Adds a row at the end; it is visible even under a filter it does not
    // satisfy (until the filter is set again). Returns its position.
    int32_t Append(Row row, RowKey key);
    // Puts rows in at a position, moving the rows from there on up. Rows put
    // in under a filter stay hidden until the filter is set again.
    void InsertAt(int32_t position, std::vector<Row> rows, std::vector<RowKey> keys);
    int32_t Size() const { return static_cast<int32_t>(rows_.size()); }
    const Row& At(int32_t position) const { return rows_[static_cast<size_t>(position)]; }
    RowKey Key(int32_t position) const { return keys_[static_cast<size_t>(position)]; }
    // Stores written values and keeps the indexes current.
    void Write(int32_t position, const std::vector<int>& columns, const std::vector<automation::Variant>& values);

    // ---- the view ----
    int32_t VisibleCount() const;
    int32_t PositionAt(int32_t visibleIndex) const;
    // Visible index of a position; -1 when the filter hides it.
    int32_t VisibleIndexOf(int32_t position) const;
    void SetFilter(const criteria::Criteria& criteria);
    void ClearFilter() { view_.reset(); }

    // Visible index of the first (forward) or last (backward) visible row
    // from visible index `from` on that satisfies the single clause; -1
    // when there is none.
    int32_t Find(const criteria::Criteria& criteria, int32_t from, bool forward);

private:
    // Positions (sorted) that may satisfy node, or nullopt when only a scan
    // can tell. Equality clauses answer from an index.
    std::optional<std::vector<int32_t>> Candidates(const criteria::Criteria& criteria, const criteria::Node& node);
    // How many positions Candidates would give for node (an upper bound
    // for OR), without gathering them; nullopt when only a scan can tell.
    std::optional<size_t> CandidateCount(const criteria::Criteria& criteria, const criteria::Node& node);
    std::vector<int32_t> EqualPositions(const criteria::Clause& clause);
    ColumnIndex& IndexFor(int column, bool dateKeys);

    std::vector<Row> rows_;
    std::vector<RowKey> keys_;
    std::optional<std::vector<int32_t>> view_;
    std::map<std::pair<int, bool>, std::unique_ptr<ColumnIndex>> indexes_;
};

}  // namespace ado
