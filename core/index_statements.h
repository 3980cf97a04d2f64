#pragma once
// The DROP INDEX and CREATE INDEX texts of the three dialects the index
// upgrader speaks.
#include <string>

namespace kdvq {

std::string OracleDropIndexSql(const std::string& index);
// The two trailing clauses follow the column list, each after one blank,
// also when they are empty.
std::string OracleCreateIndexSql(const std::string& index, const std::string& table, const std::string& columns,
                                 const std::string& clause1, const std::string& clause2);

std::string MSSQLDropIndexSql(const std::string& index, const std::string& table);
std::string AccessDropIndexSql(const std::string& index, const std::string& table);
// SQL Server and Access: " WITH " + clause only when the clause is given.
std::string CreateIndexWithSql(const std::string& index, const std::string& table, const std::string& columns,
                               const std::string& withClause);

}  // namespace kdvq
