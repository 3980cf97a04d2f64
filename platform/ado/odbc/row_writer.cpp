#include "platform/ado/odbc/row_writer.h"

namespace ado::odbc {

using automation::Variant;

namespace {

bool IsMissing(const Variant& value) { return value.IsNull() || value.IsEmpty(); }

}  // namespace

Statement& RowWriter::Prepared(const std::string& sql) {
    auto found = prepared_.find(sql);
    if (found != prepared_.end()) return *found->second;
    auto statement = std::make_unique<Statement>(link_);
    statement->Prepare(sql);
    return *prepared_.emplace(sql, std::move(statement)).first->second;
}

void RowWriter::Insert(const std::vector<const BaseColumn*>& columns, const std::vector<Variant>& values) {
    std::string names, marks;
    for (const BaseColumn* column : columns) {
        names += (names.empty() ? "" : ", ") + link_->Quote(column->name);
        marks += marks.empty() ? "?" : ", ?";
    }
    // A row of defaults only: every server takes DEFAULT VALUES but Oracle,
    // which the recordsets never ask for an empty row.
    std::string sql = columns.empty() ? "INSERT INTO " + table_ + " DEFAULT VALUES"
                                      : "INSERT INTO " + table_ + " (" + names + ") VALUES (" + marks + ")";
    Statement& statement = Prepared(sql);
    Parameters parameters(statement);
    for (size_t i = 0; i < columns.size(); ++i) parameters.Bind(values[i], columns[i]->type);
    statement.Execute();
}

SQLLEN RowWriter::Update(const std::vector<const BaseColumn*>& columns, const std::vector<Variant>& values,
                         const std::vector<const BaseColumn*>& match, const std::vector<Variant>& matchValues) {
    std::string sql = "UPDATE " + table_ + " SET ";
    for (size_t i = 0; i < columns.size(); ++i) sql += (i ? ", " : "") + link_->Quote(columns[i]->name) + " = ?";
    for (size_t i = 0; i < match.size(); ++i) {
        sql += i ? " AND " : " WHERE ";
        sql += link_->Quote(match[i]->name) + (IsMissing(matchValues[i]) ? " IS NULL" : " = ?");
    }
    Statement& statement = Prepared(sql);
    Parameters parameters(statement);
    for (size_t i = 0; i < columns.size(); ++i) parameters.Bind(values[i], columns[i]->type);
    for (size_t i = 0; i < match.size(); ++i)
        if (!IsMissing(matchValues[i])) parameters.Bind(matchValues[i], match[i]->type);
    return statement.Execute();
}

}  // namespace ado::odbc
