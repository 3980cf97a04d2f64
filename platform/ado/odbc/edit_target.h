#pragma once
// Where an editable cursor writes: the one table of a query of the simple
// form SelectShape recognises (whose list names columns and computes none),
// the base column of each result column, and how a row read earlier is
// found again:
//   - by the primary key, when the query selects every key column;
//   - by the primary key added to the query as hidden leading columns, when
//     the table has a key the query leaves out;
//   - otherwise by the values the row was read with (every column but long
//     text and binary ones), Null matched with IS NULL.
// No row is ever looked for by scanning.
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/odbc/odbc_catalog.h"
#include "platform/ado/odbc/odbc_handles.h"
#include "platform/ado/odbc/odbc_values.h"
#include "platform/ado/odbc/row_writer.h"
#include "platform/ado/odbc/select_shape.h"
#include "platform/ado/provider.h"

namespace ado::odbc {

class EditTarget {
public:
    // The target of a query whose result has these columns; nullptr when
    // its rows cannot be written (several tables, computed columns, a table
    // the catalog does not know).
    static std::unique_ptr<EditTarget> For(const LinkPtr& link, const std::string& sql,
                                           const std::vector<ColumnInfo>& columns);

    const std::string& TableName() const { return table_.name; }

    // The query with the key columns leading, when they are to be added;
    // empty otherwise.
    const std::string& KeyedQuery() const { return keyedQuery_; }
    size_t KeyCount() const { return hiddenKey_.size(); }
    // The keyed query runs; these are its leading columns.
    void UseKeyedQuery(const std::vector<ColumnInfo>& keyColumns);
    // The keyed query cannot run: rows are found by their values instead.
    void DropKeyedQuery();

    // The identity of a row read, given its hidden key values (none when
    // the query has no hidden key).
    RowKey Track(std::vector<automation::Variant> hiddenKey);
    RowKey Insert(const std::vector<int>& columns, const std::vector<automation::Variant>& values);
    void Update(RowKey key, const std::vector<automation::Variant>& original, const std::vector<int>& columns,
                const std::vector<automation::Variant>& values);

private:
    enum class Identity { kValues, kKeyInRow, kHiddenKey };

    EditTarget(const LinkPtr& link, TableShape table);
    // The columns and values that find row key (read as original) again.
    void Identify(RowKey key, const std::vector<automation::Variant>& original,
                  std::vector<const BaseColumn*>* match, std::vector<automation::Variant>* values) const;
    std::vector<const BaseColumn*> ColumnsAt(const std::vector<int>& indexes) const;
    // The hidden key kept for a row; null without hidden keys.
    std::vector<automation::Variant>* HiddenKeyOf(RowKey key);
    const std::vector<automation::Variant>* HiddenKeyOf(RowKey key) const;
    // Keeps a row's hidden key current after its mirrored columns were written.
    void MirrorWrites(std::vector<automation::Variant>& hiddenKey, const std::vector<int>& columns,
                      const std::vector<automation::Variant>& values) const;

    LinkPtr link_;
    TableShape table_;
    RowWriter writer_;
    std::vector<BaseColumn> columns_;   // one per result column
    Identity identity_ = Identity::kValues;
    std::vector<int> keyInRow_;         // kKeyInRow: result columns of the key
    std::vector<BaseColumn> hiddenKey_; // kHiddenKey: the key columns
    std::vector<int> mirrors_;          // kHiddenKey: result column holding each key column, or -1
    std::string keyedQuery_;
    std::vector<std::vector<automation::Variant>> hiddenKeys_;  // kHiddenKey: by RowKey; empty: unknown
    RowKey rowsWithoutKey_ = 0;  // other identities: RowKeys only number the rows
};

}  // namespace ado::odbc
