#include "platform/ado/odbc/odbc_cursor.h"

namespace ado::odbc {

using automation::Variant;

OdbcCursor::OdbcCursor(LinkPtr link, const std::string& sql, const QueryOptions& options)
    : link_(std::move(link)), statement_(link_), sql_(sql) {
    if (options.editable) PrepareEditable(sql);
    Run();
    // What the open result has is what the rows hold; a driver that could
    // not describe the prepared query may differ from the prepared form.
    std::vector<ColumnInfo> result = DescribeColumns(statement_);
    if (result.size() != described_.size()) {
        target_.reset();
        hidden_ = 0;
    }
    described_ = std::move(result);
    for (size_t i = hidden_; i < described_.size(); ++i) columns_.push_back(described_[i].name);
    if (target_) baseTable_ = target_->TableName();
}

void OdbcCursor::PrepareEditable(const std::string& sql) {
    statement_.Prepare(sql);
    prepared_ = true;
    described_ = DescribeColumns(statement_);
    target_ = EditTarget::For(link_, sql, described_);
    if (!target_ || target_->KeyedQuery().empty()) return;
    try {
        // Guarded: on a server where a refused statement aborts the
        // transaction, the refusal must not take the transaction with it.
        std::vector<ColumnInfo> keyed = link_->Guarded([&] {
            statement_.Prepare(target_->KeyedQuery());
            return DescribeColumns(statement_);
        });
        if (keyed.size() == described_.size() + target_->KeyCount()) {
            sql_ = target_->KeyedQuery();
            hidden_ = target_->KeyCount();
            keyed.resize(hidden_);
            target_->UseKeyedQuery(keyed);
            described_.insert(described_.begin(), keyed.begin(), keyed.end());
            return;
        }
    } catch (const ProviderError&) {
        // The server refused the keyed form: rows are found by their values.
    }
    target_->DropKeyedQuery();
    statement_.Prepare(sql);
}

void OdbcCursor::Run() {
    if (prepared_)
        statement_.Execute();
    else
        statement_.ExecDirect(sql_);
    open_ = true;
}

bool OdbcCursor::Fetch(std::vector<Variant>& row, RowKey& key) {
    if (!open_ || described_.empty()) return false;
    try {
        SQLRETURN rc = SQLFetch(statement_.Get());
        if (rc == SQL_NO_DATA) {
            // Closing at the end frees the connection for other statements
            // on servers that allow one open result at a time.
            statement_.CloseCursor();
            open_ = false;
            return false;
        }
        statement_.Check(rc, "SQLFetch");
        std::vector<Variant> hiddenKey;
        for (size_t i = 0; i < hidden_; ++i)
            hiddenKey.push_back(ReadValue(statement_, static_cast<SQLUSMALLINT>(i + 1), described_[i]));
        row.resize(columns_.size());
        for (size_t i = 0; i < columns_.size(); ++i)
            row[i] = ReadValue(statement_, static_cast<SQLUSMALLINT>(hidden_ + i + 1), described_[hidden_ + i]);
        key = target_ ? target_->Track(std::move(hiddenKey)) : nextKey_++;
        return true;
    } catch (...) {
        statement_.CloseCursor();
        open_ = false;
        throw;
    }
}

void OdbcCursor::Restart() {
    statement_.CloseCursor();
    open_ = false;
    link_->Guarded([&] { Run(); });
}

EditTarget& OdbcCursor::Target() {
    if (!target_) throw ProviderError(link_->Name(), 0, "The query cannot be written to");
    return *target_;
}

RowKey OdbcCursor::InsertRow(const std::vector<int>& columns, const std::vector<Variant>& values) {
    return link_->Guarded([&] { return Target().Insert(columns, values); });
}

void OdbcCursor::UpdateRow(RowKey key, const std::vector<Variant>& original, const std::vector<int>& columns,
                           const std::vector<Variant>& values) {
    link_->Guarded([&] { Target().Update(key, original, columns, values); });
}

}  // namespace ado::odbc
