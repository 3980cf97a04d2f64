#pragma once
// The text side of the SQLite provider's helper indices: a statement's
// shape (its text with the literals taken out), the tables its names stand
// for, the columns its conditions compare for equality, and what a line of
// the engine's query plan asks for. None of it touches the database.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/ado/sqlite/sql_tokens.h"

namespace ado::sql {

// Statements that differ only in their constants have one shape.
std::string StatementShape(const std::string& sql);

// Whether the text holds a statement that changes table definitions
// (ALTER, DROP, CREATE), and the names it uses (every name, in order).
bool ChangesDefinitions(const std::vector<Token>& tokens);
std::vector<std::string> NamesUsed(const std::vector<Token>& tokens);

// The table a name of the statement stands for: the table that an alias
// after FROM, JOIN or UPDATE names, otherwise the name itself.
std::string TableOfName(const std::vector<Token>& tokens, const std::string& name);

// The columns of one table of the statement (known there as `name`) that
// its conditions compare for equality: with a constant, and with a column
// of another table. hasColumn tells whether the table has a column, for
// names written without their table.
struct EqualityColumns {
    std::vector<std::string> withConstant;
    std::vector<std::string> withColumn;
};
EqualityColumns EqualityColumnsOf(const std::vector<Token>& tokens, const std::string& name,
                                  const std::function<bool(const std::string&)>& hasColumn);

// A line of the engine's query plan that an index could serve: a full scan
// of a table (the columns then come from the statement's conditions), or
// an automatic index the engine builds for the statement (with its
// columns). name is as the plan gives it: the table or its alias.
struct PlanNeed {
    std::string name;
    std::vector<std::string> columns;  // empty for a full scan
};
std::optional<PlanNeed> ReadPlanLine(const std::string& detail);

}  // namespace ado::sql
