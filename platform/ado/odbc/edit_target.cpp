#include "platform/ado/odbc/edit_target.h"

#include <algorithm>

#include "platform/ado/sqlite/sql_tokens.h"

namespace ado::odbc {

using automation::Variant;

namespace {

const char* const kRowNotFound =
    "Row cannot be located for updating. Some values may have been changed since it was last read.";

// The table's column that a result column shows: by the base column name
// the driver reports, else by the column's label; exact case first.
const std::string* FindBaseColumn(const TableShape& table, const ColumnInfo& column) {
    for (const std::string* wanted : {&column.baseColumn, &column.name}) {
        if (wanted->empty()) continue;
        for (const std::string& name : table.columns)
            if (name == *wanted) return &name;
        for (const std::string& name : table.columns)
            if (sql::SameName(name, *wanted)) return &name;
    }
    return nullptr;
}

// Whether the driver's word agrees that every column comes from the
// query's one table. Drivers that name no column's table leave it to the
// text; a driver that names the table of some columns only has computed the
// others.
bool DriverAgrees(const std::string& table, const std::vector<ColumnInfo>& columns) {
    bool tells = false, silent = false;
    for (const ColumnInfo& c : columns) {
        (c.baseTable.empty() ? silent : tells) = true;
        if (!c.baseTable.empty() && !sql::SameName(c.baseTable, table)) return false;
    }
    return !(tells && silent);
}

}  // namespace

EditTarget::EditTarget(const LinkPtr& link, TableShape table)
    : link_(link),
      table_(std::move(table)),
      writer_(link, (table_.schema.empty() ? "" : link->Quote(table_.schema) + ".") + link->Quote(table_.name)) {}

std::unique_ptr<EditTarget> EditTarget::For(const LinkPtr& link, const std::string& sql,
                                            const std::vector<ColumnInfo>& columns) {
    std::optional<SelectShape> shape = ParseSelectShape(sql);
    if (columns.empty() || !shape || shape->listComputes) return nullptr;
    std::optional<TableShape> table = FindTable(link, shape->schema, shape->table);
    if (!table || !DriverAgrees(table->name, columns)) return nullptr;

    std::unique_ptr<EditTarget> target(new EditTarget(link, std::move(*table)));
    const TableShape& t = target->table_;
    for (const ColumnInfo& c : columns) {
        const std::string* base = FindBaseColumn(t, c);
        if (!base) return nullptr;
        target->columns_.push_back(BaseColumn{*base, c});
    }
    if (t.keyColumns.empty()) return target;

    for (const std::string& key : t.keyColumns) {
        auto at = std::find_if(target->columns_.begin(), target->columns_.end(),
                               [&](const BaseColumn& c) { return c.name == key; });
        target->mirrors_.push_back(at == target->columns_.end() ? -1
                                                                : static_cast<int>(at - target->columns_.begin()));
    }
    if (std::find(target->mirrors_.begin(), target->mirrors_.end(), -1) == target->mirrors_.end()) {
        target->identity_ = Identity::kKeyInRow;
        target->keyInRow_ = std::move(target->mirrors_);
        target->mirrors_.clear();
    } else {
        std::vector<std::string> references;
        for (const std::string& key : t.keyColumns) {
            references.push_back(shape->qualifier + "." + link->Quote(key));
            target->hiddenKey_.push_back(BaseColumn{key, ColumnInfo{}});
        }
        target->keyedQuery_ = WithLeadingColumns(sql, *shape, references);
        target->identity_ = Identity::kHiddenKey;
    }
    return target;
}

void EditTarget::UseKeyedQuery(const std::vector<ColumnInfo>& keyColumns) {
    for (size_t i = 0; i < hiddenKey_.size() && i < keyColumns.size(); ++i) hiddenKey_[i].type = keyColumns[i];
}

void EditTarget::DropKeyedQuery() {
    identity_ = Identity::kValues;
    keyedQuery_.clear();
    hiddenKey_.clear();
    mirrors_.clear();
}

RowKey EditTarget::Track(std::vector<Variant> hiddenKey) {
    if (identity_ != Identity::kHiddenKey) return rowsWithoutKey_++;
    hiddenKeys_.push_back(std::move(hiddenKey));
    return static_cast<RowKey>(hiddenKeys_.size() - 1);
}

std::vector<Variant>* EditTarget::HiddenKeyOf(RowKey key) {
    if (identity_ != Identity::kHiddenKey || key < 0 || static_cast<size_t>(key) >= hiddenKeys_.size()) return nullptr;
    return &hiddenKeys_[static_cast<size_t>(key)];
}

const std::vector<Variant>* EditTarget::HiddenKeyOf(RowKey key) const {
    return const_cast<EditTarget*>(this)->HiddenKeyOf(key);
}

std::vector<const BaseColumn*> EditTarget::ColumnsAt(const std::vector<int>& indexes) const {
    std::vector<const BaseColumn*> columns;
    for (int i : indexes) columns.push_back(&columns_.at(static_cast<size_t>(i)));
    return columns;
}

void EditTarget::MirrorWrites(std::vector<Variant>& hiddenKey, const std::vector<int>& columns,
                              const std::vector<Variant>& values) const {
    for (size_t k = 0; k < mirrors_.size() && k < hiddenKey.size(); ++k)
        for (size_t i = 0; i < columns.size(); ++i)
            if (columns[i] == mirrors_[k]) hiddenKey[k] = values[i];
}

RowKey EditTarget::Insert(const std::vector<int>& columns, const std::vector<Variant>& values) {
    writer_.Insert(ColumnsAt(columns), values);
    // The new row's key is known when every key column was written.
    bool keyWritten = std::all_of(mirrors_.begin(), mirrors_.end(), [&](int mirror) {
        return std::find(columns.begin(), columns.end(), mirror) != columns.end();
    });
    std::vector<Variant> hiddenKey;
    if (identity_ == Identity::kHiddenKey && keyWritten) {
        hiddenKey.assign(hiddenKey_.size(), Variant());
        MirrorWrites(hiddenKey, columns, values);
    }
    return Track(std::move(hiddenKey));
}

void EditTarget::Identify(RowKey key, const std::vector<Variant>& original, std::vector<const BaseColumn*>* match,
                          std::vector<Variant>* values) const {
    if (identity_ == Identity::kKeyInRow) {
        for (int k : keyInRow_) {
            match->push_back(&columns_[static_cast<size_t>(k)]);
            values->push_back(original[static_cast<size_t>(k)]);
        }
        return;
    }
    if (const std::vector<Variant>* hidden = HiddenKeyOf(key); hidden && !hidden->empty()) {
        for (size_t k = 0; k < hiddenKey_.size(); ++k) {
            match->push_back(&hiddenKey_[k]);
            values->push_back((*hidden)[k]);
        }
        return;
    }
    // By the values read; servers cannot compare long text and binary
    // columns, so those count only when there is nothing else.
    bool allLong = std::all_of(columns_.begin(), columns_.end(),
                               [](const BaseColumn& c) { return IsLongType(c.type.sqlType); });
    for (size_t i = 0; i < columns_.size(); ++i) {
        if (!allLong && IsLongType(columns_[i].type.sqlType)) continue;
        match->push_back(&columns_[i]);
        values->push_back(original[i]);
    }
}

void EditTarget::Update(RowKey key, const std::vector<Variant>& original, const std::vector<int>& columns,
                        const std::vector<Variant>& values) {
    if (columns.empty()) return;
    std::vector<const BaseColumn*> match;
    std::vector<Variant> matchValues;
    Identify(key, original, &match, &matchValues);
    if (writer_.Update(ColumnsAt(columns), values, match, matchValues) == 0)
        throw ProviderError(link_->Name(), 0, kRowNotFound);
    if (std::vector<Variant>* hidden = HiddenKeyOf(key)) MirrorWrites(*hidden, columns, values);
}

}  // namespace ado::odbc
