#include "core/index_statements.h"

namespace kdvq {

std::string OracleDropIndexSql(const std::string& index) { return "DROP INDEX " + index; }

std::string OracleCreateIndexSql(const std::string& index, const std::string& table, const std::string& columns,
                                 const std::string& clause1, const std::string& clause2) {
    return "CREATE INDEX " + index + " ON " + table + "(" + columns + ") " + clause1 + " " + clause2;
}

std::string MSSQLDropIndexSql(const std::string& index, const std::string& table) {
    return "DROP INDEX " + table + "." + index;
}

std::string AccessDropIndexSql(const std::string& index, const std::string& table) {
    return "DROP INDEX " + index + " ON " + table;
}

std::string CreateIndexWithSql(const std::string& index, const std::string& table, const std::string& columns,
                               const std::string& withClause) {
    std::string sql = "CREATE INDEX " + index + " ON " + table + "(" + columns + ")";
    if (!withClause.empty()) sql += " WITH " + withClause;
    return sql;
}

}  // namespace kdvq
