#include "platform/ado/odbc/select_shape.h"

#include "platform/ado/sqlite/sql_tokens.h"

namespace ado::odbc {
namespace {

using sql::Token;

bool IsAnyOf(const Token& token, std::initializer_list<const char*> keywords) {
    for (const char* keyword : keywords)
        if (token.Is(keyword)) return true;
    return false;
}

// Words that end the FROM clause's table or begin what this shape excludes.
bool IsClauseWord(const Token& token) {
    return IsAnyOf(token, {"WHERE", "ORDER", "GROUP", "HAVING", "UNION", "INTERSECT", "EXCEPT", "MINUS", "JOIN",
                           "INNER", "LEFT", "RIGHT", "FULL", "CROSS", "NATURAL", "OUTER", "ON", "USING", "FOR",
                           "LIMIT", "OFFSET", "FETCH", "START", "CONNECT", "WINDOW", "WITH"});
}

}  // namespace

std::optional<SelectShape> ParseSelectShape(const std::string& sql) {
    std::vector<Token> t = sql::Tokenize(sql);
    if (!t.empty() && t.back().IsPunct(';')) t.pop_back();
    if (t.size() < 4 || !t[0].Is("SELECT") || IsAnyOf(t[1], {"DISTINCT", "ALL", "TOP", "UNIQUE"})) return std::nullopt;

    // The FROM of the SELECT itself: outside any parentheses.
    size_t from = 0;
    int depth = 0;
    for (size_t i = 1; i < t.size() && from == 0; ++i) {
        if (t[i].IsPunct('(')) ++depth;
        if (t[i].IsPunct(')')) --depth;
        if (t[i].IsPunct(';')) return std::nullopt;
        if (depth == 0 && t[i].Is("FROM")) from = i;
    }
    if (from < 2) return std::nullopt;

    SelectShape shape;
    shape.listBegin = t[1].begin;
    shape.listEnd = t[from - 1].end;
    shape.listIsStar = from == 2 && t[1].IsPunct('*');
    for (size_t i = 1; i < from; ++i)
        if (!t[i].IsName() && !t[i].IsPunct('.') && !t[i].IsPunct(',') && !t[i].IsPunct('*')) shape.listComputes = true;

    // [schema.]table
    size_t i = from + 1;
    std::vector<std::string> parts;
    size_t nameBegin = i < t.size() ? t[i].begin : 0;
    while (i < t.size() && t[i].IsName() && !IsClauseWord(t[i])) {
        parts.push_back(t[i].text);
        size_t nameEnd = t[i].end;
        ++i;
        shape.qualifier = sql.substr(nameBegin, nameEnd - nameBegin);
        if (i + 1 < t.size() && t[i].IsPunct('.') && t[i + 1].IsName()) {
            ++i;
            continue;
        }
        break;
    }
    if (parts.empty() || parts.size() > 2) return std::nullopt;
    shape.table = parts.back();
    if (parts.size() == 2) shape.schema = parts.front();

    // [[AS] alias]
    if (i < t.size() && t[i].Is("AS")) ++i;
    if (i < t.size() && t[i].IsName() && !IsClauseWord(t[i])) shape.qualifier = t[i++].text;

    // Then nothing, or a condition and an order, with no grouping,
    // compounding or further statements anywhere at the top level.
    if (i < t.size() && !t[i].Is("WHERE") && !t[i].Is("ORDER")) return std::nullopt;
    depth = 0;
    for (; i < t.size(); ++i) {
        if (t[i].IsPunct('(')) ++depth;
        if (t[i].IsPunct(')')) --depth;
        if (t[i].IsPunct(';')) return std::nullopt;
        if (depth == 0 && IsAnyOf(t[i], {"GROUP", "HAVING", "UNION", "INTERSECT", "EXCEPT", "MINUS", "JOIN"}))
            return std::nullopt;
    }
    return shape;
}

std::string WithLeadingColumns(const std::string& sql, const SelectShape& shape,
                               const std::vector<std::string>& columns) {
    std::string list;
    for (const std::string& column : columns) list += column + ", ";
    list += shape.listIsStar ? shape.qualifier + ".*" : sql.substr(shape.listBegin, shape.listEnd - shape.listBegin);
    return sql.substr(0, shape.listBegin) + list + sql.substr(shape.listEnd);
}

}  // namespace ado::odbc
