#include "platform/ado/row_store.h"

#include <algorithm>
#include <iterator>

namespace ado {

using criteria::Clause;
using criteria::Criteria;
using criteria::Node;

namespace {

bool IsIndexable(const Clause& clause) {
    return clause.op == criteria::Op::kEqual && clause.value.kind != criteria::LiteralKind::kNull;
}

template <typename Positions>
std::vector<int32_t> Union(const std::vector<int32_t>& a, const Positions& b) {
    std::vector<int32_t> out;
    out.reserve(a.size() + b.size());
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(out));
    return out;
}

}  // namespace

void RowStore::Clear() {
    rows_.clear();
    keys_.clear();
    view_.reset();
    indexes_.clear();
}

int32_t RowStore::Append(Row row, RowKey key) {
    int32_t position = static_cast<int32_t>(rows_.size());
    for (auto& [id, index] : indexes_) index->Append(position, row[static_cast<size_t>(id.first)]);
    rows_.push_back(std::move(row));
    keys_.push_back(key);
    if (view_) view_->push_back(position);
    return position;
}

void RowStore::InsertAt(int32_t position, std::vector<Row> rows, std::vector<RowKey> keys) {
    if (rows.empty()) return;
    auto count = static_cast<int32_t>(rows.size());
    rows_.insert(rows_.begin() + position, std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    keys_.insert(keys_.begin() + position, keys.begin(), keys.end());
    if (view_)
        for (int32_t& visible : *view_)
            if (visible >= position) visible += count;
    // The indexes hold positions; they are built again when next needed.
    indexes_.clear();
}

void RowStore::Write(int32_t position, const std::vector<int>& columns, const std::vector<automation::Variant>& values) {
    Row& row = rows_[static_cast<size_t>(position)];
    for (size_t i = 0; i < columns.size(); ++i) {
        automation::Variant& cell = row[static_cast<size_t>(columns[i])];
        for (auto& [id, index] : indexes_)
            if (id.first == columns[i]) index->Replace(position, cell, values[i]);
        cell = values[i];
    }
}

int32_t RowStore::VisibleCount() const {
    return static_cast<int32_t>(view_ ? view_->size() : rows_.size());
}

int32_t RowStore::PositionAt(int32_t visibleIndex) const {
    return view_ ? (*view_)[static_cast<size_t>(visibleIndex)] : visibleIndex;
}

int32_t RowStore::VisibleIndexOf(int32_t position) const {
    if (!view_) return position;
    auto at = std::lower_bound(view_->begin(), view_->end(), position);
    return at != view_->end() && *at == position ? static_cast<int32_t>(at - view_->begin()) : -1;
}

ColumnIndex& RowStore::IndexFor(int column, bool dateKeys) {
    std::unique_ptr<ColumnIndex>& index = indexes_[{column, dateKeys}];
    if (!index) index = std::make_unique<ColumnIndex>(rows_, column, dateKeys);
    return *index;
}

std::vector<int32_t> RowStore::EqualPositions(const Clause& clause) {
    ColumnIndex& index = IndexFor(clause.columnIndex, criteria::KeysAsDate(clause.value.kind));
    std::vector<int32_t> out;
    // A field has one key, so the lists of different literal keys are disjoint.
    for (const criteria::MatchKey& key : clause.keys)
        if (const PositionList* found = index.Find(key))
            out = out.empty() ? std::vector<int32_t>(found->begin(), found->end()) : Union(out, *found);
    return out;
}

std::optional<size_t> RowStore::CandidateCount(const Criteria& c, const Node& node) {
    switch (node.kind) {
        case Node::Kind::kClause: {
            const Clause& clause = c.Clauses()[node.clause];
            if (!IsIndexable(clause)) return std::nullopt;
            ColumnIndex& index = IndexFor(clause.columnIndex, criteria::KeysAsDate(clause.value.kind));
            size_t count = 0;
            for (const criteria::MatchKey& key : clause.keys)
                if (const PositionList* found = index.Find(key)) count += found->size();
            return count;
        }
        case Node::Kind::kAnd: {
            std::optional<size_t> least;
            for (const Node& child : node.children)
                if (std::optional<size_t> count = CandidateCount(c, child); count && (!least || *count < *least))
                    least = count;
            return least;
        }
        case Node::Kind::kOr: {
            size_t total = 0;
            for (const Node& child : node.children) {
                std::optional<size_t> count = CandidateCount(c, child);
                if (!count) return std::nullopt;
                total += *count;
            }
            return total;
        }
    }
    return std::nullopt;
}

std::optional<std::vector<int32_t>> RowStore::Candidates(const Criteria& c, const Node& node) {
    switch (node.kind) {
        case Node::Kind::kClause: {
            const Clause& clause = c.Clauses()[node.clause];
            if (!IsIndexable(clause)) return std::nullopt;
            return EqualPositions(clause);
        }
        case Node::Kind::kAnd: {
            // Any one indexed conjunct bounds the matches; the narrowest is
            // taken, so that a conjunct every row satisfies (a node type,
            // say) does not make each Find or Filter walk the whole store.
            const Node* narrowest = nullptr;
            size_t narrowestCount = 0;
            for (const Node& child : node.children) {
                std::optional<size_t> count = CandidateCount(c, child);
                if (count && (!narrowest || *count < narrowestCount)) {
                    narrowest = &child;
                    narrowestCount = *count;
                }
            }
            if (!narrowest) return std::nullopt;
            return Candidates(c, *narrowest);
        }
        case Node::Kind::kOr: {
            std::vector<int32_t> all;
            for (const Node& child : node.children) {
                auto found = Candidates(c, child);
                if (!found) return std::nullopt;
                all = Union(all, *found);
            }
            return all;
        }
    }
    return std::nullopt;
}

void RowStore::SetFilter(const Criteria& c) {
    std::vector<int32_t> visible;
    if (auto candidates = Candidates(c, c.Root())) {
        for (int32_t p : *candidates)
            if (c.Matches(At(p))) visible.push_back(p);
    } else {
        for (int32_t p = 0; p < static_cast<int32_t>(rows_.size()); ++p)
            if (c.Matches(At(p))) visible.push_back(p);
    }
    view_ = std::move(visible);
}

int32_t RowStore::Find(const Criteria& c, int32_t from, bool forward) {
    const int32_t count = VisibleCount();
    if (from < 0) {
        if (!forward) return -1;
        from = 0;
    }
    if (from >= count) {
        if (forward) return -1;
        from = count - 1;
    }
    if (auto candidates = Candidates(c, c.Root())) {
        // Candidates are sorted by position, which is also the view's order.
        const std::vector<int32_t>& list = *candidates;
        int32_t start = PositionAt(from);
        if (forward) {
            for (auto it = std::lower_bound(list.begin(), list.end(), start); it != list.end(); ++it) {
                int32_t index = VisibleIndexOf(*it);
                if (index >= 0 && c.Matches(At(*it))) return index;
            }
        } else {
            for (auto it = std::upper_bound(list.begin(), list.end(), start); it != list.begin();) {
                --it;
                int32_t index = VisibleIndexOf(*it);
                if (index >= 0 && c.Matches(At(*it))) return index;
            }
        }
        return -1;
    }
    for (int32_t i = from; i >= 0 && i < count; i += forward ? 1 : -1)
        if (c.Matches(At(PositionAt(i)))) return i;
    return -1;
}

}  // namespace ado
