#include "platform/ado/sqlite/helper_index_rule.h"

#include <cctype>

namespace ado::sql {
namespace {

bool IsAnyOf(const Token& t, std::initializer_list<const char*> keywords) {
    for (const char* keyword : keywords)
        if (t.Is(keyword)) return true;
    return false;
}

// Words that end a table reference rather than give it an alias.
bool EndsTableReference(const Token& t) {
    return IsAnyOf(t, {"WHERE", "ON", "JOIN", "INNER", "LEFT", "RIGHT", "FULL", "CROSS", "NATURAL", "OUTER", "USING",
                       "GROUP", "ORDER", "LIMIT", "UNION", "EXCEPT", "INTERSECT", "SET", "HAVING", "WINDOW",
                       "INDEXED", "NOT", "VALUES", "RETURNING", "DEFAULT", "SELECT"});
}

const Token* At(const std::vector<Token>& tokens, size_t i) { return i < tokens.size() ? &tokens[i] : nullptr; }

bool IsPunctAt(const std::vector<Token>& tokens, size_t i, char c) {
    const Token* t = At(tokens, i);
    return t && t->IsPunct(c);
}

// A value the statement gives as it is: a string, a number (signed), a
// parameter mark or a named parameter. *end receives the token after it.
bool ConstantAt(const std::vector<Token>& tokens, size_t i, size_t* end) {
    const Token* t = At(tokens, i);
    if (!t) return false;
    if ((t->IsPunct('-') || t->IsPunct('+')) && At(tokens, i + 1) && tokens[i + 1].kind == Token::Kind::kNumber) {
        *end = i + 2;
        return true;
    }
    bool constant = t->kind == Token::Kind::kString || t->kind == Token::Kind::kNumber || t->IsPunct('?') ||
                    (t->kind == Token::Kind::kWord && (t->text[0] == '@' || t->text[0] == '$'));
    if (constant) *end = i + 1;
    return constant;
}

struct ColumnRef {
    std::string qualifier;  // the table or alias written before it, or ""
    std::string column;
};

// A column written as name or qualifier.name, starting at i (not a
// function call); *end receives the token after it.
std::optional<ColumnRef> ColumnFrom(const std::vector<Token>& tokens, size_t i, size_t* end) {
    const Token* t = At(tokens, i);
    if (!t || !t->IsName() || t->Is("NULL")) return std::nullopt;
    if (IsPunctAt(tokens, i + 1, '.') && At(tokens, i + 2) && tokens[i + 2].IsName()) {
        *end = i + 3;
        return ColumnRef{t->text, tokens[i + 2].text};
    }
    if (IsPunctAt(tokens, i + 1, '(')) return std::nullopt;
    *end = i + 1;
    return ColumnRef{"", t->text};
}

// The column written just before position i.
std::optional<ColumnRef> ColumnEndingAt(const std::vector<Token>& tokens, size_t i) {
    if (i == 0 || !tokens[i - 1].IsName() || tokens[i - 1].Is("NULL")) return std::nullopt;
    if (i >= 3 && tokens[i - 2].IsPunct('.') && tokens[i - 3].IsName())
        return ColumnRef{tokens[i - 3].text, tokens[i - 1].text};
    return ColumnRef{"", tokens[i - 1].text};
}

bool ConstantEndingAt(const std::vector<Token>& tokens, size_t i) {
    size_t end = 0;
    return i > 0 && ConstantAt(tokens, i - 1, &end);
}

// Whether the expression goes on after a side of a comparison (a + b = c),
// which makes that side no plain column or constant.
bool ArithmeticAt(const std::vector<Token>& tokens, size_t i) {
    const Token* t = At(tokens, i);
    if (!t || t->kind != Token::Kind::kPunct) return false;
    return t->text.find_first_of("+-*/%|&<>") != std::string::npos;
}

void AddOnce(std::vector<std::string>& names, const std::string& name) {
    for (const std::string& n : names)
        if (SameName(n, name)) return;
    names.push_back(name);
}

}  // namespace

std::string StatementShape(const std::string& sql) {
    std::string shape;
    for (const Token& t : Tokenize(sql)) {
        if (!shape.empty()) shape += ' ';
        if (t.kind == Token::Kind::kString || t.kind == Token::Kind::kNumber) {
            shape += '?';
            continue;
        }
        for (char c : t.text) shape += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return shape;
}

bool ChangesDefinitions(const std::vector<Token>& tokens) {
    for (size_t i = 0; i < tokens.size(); ++i) {
        bool starts = i == 0 || tokens[i - 1].IsPunct(';');
        if (starts && IsAnyOf(tokens[i], {"ALTER", "DROP", "CREATE"})) return true;
    }
    return false;
}

std::vector<std::string> NamesUsed(const std::vector<Token>& tokens) {
    std::vector<std::string> names;
    for (const Token& t : tokens)
        if (t.IsName()) names.push_back(t.text);
    return names;
}

std::string TableOfName(const std::vector<Token>& tokens, const std::string& name) {
    bool inFrom = false;
    for (size_t i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        bool startsReference = t.Is("FROM") || t.Is("JOIN") || t.Is("UPDATE") || (inFrom && t.IsPunct(','));
        if (t.Is("FROM")) inFrom = true;
        if (EndsTableReference(t) && !t.Is("JOIN")) inFrom = false;
        if (!startsReference) continue;
        size_t j = i + 1;
        if (t.Is("UPDATE") && At(tokens, j) && tokens[j].Is("OR")) j += 2;  // UPDATE OR <conflict> table
        if (!At(tokens, j) || !tokens[j].IsName()) continue;
        while (IsPunctAt(tokens, j + 1, '.') && At(tokens, j + 2) && tokens[j + 2].IsName()) j += 2;
        const std::string& table = tokens[j].text;
        size_t k = j + 1;
        if (At(tokens, k) && tokens[k].Is("AS")) ++k;
        const Token* alias = At(tokens, k);
        bool hasAlias = alias && alias->IsName() && !EndsTableReference(*alias);
        if (hasAlias ? SameName(alias->text, name) : SameName(table, name)) return table;
    }
    return name;
}

EqualityColumns EqualityColumnsOf(const std::vector<Token>& tokens, const std::string& name,
                                  const std::function<bool(const std::string&)>& hasColumn) {
    EqualityColumns found;
    auto belongs = [&](const ColumnRef& ref) {
        return ref.qualifier.empty() ? hasColumn(ref.column) : SameName(ref.qualifier, name);
    };
    bool inCondition = false;
    for (size_t i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        if (IsAnyOf(t, {"WHERE", "ON", "HAVING"})) inCondition = true;
        if (IsAnyOf(t, {"SELECT", "FROM", "SET", "GROUP", "ORDER", "LIMIT", "VALUES"})) inCondition = false;
        if (!inCondition || !t.IsPunct('=')) continue;
        // "<=", ">=", "!=" and the second half of "==" are no comparison of their own here.
        if (i > 0 && tokens[i - 1].kind == Token::Kind::kPunct && tokens[i - 1].text.find_first_of("<>!=") == 0)
            continue;
        size_t right = IsPunctAt(tokens, i + 1, '=') ? i + 2 : i + 1;
        size_t leftStart = i;
        std::optional<ColumnRef> left = ColumnEndingAt(tokens, i);
        if (left) leftStart = i - (left->qualifier.empty() ? 1 : 3);
        if (leftStart > 0 && ArithmeticAt(tokens, leftStart - 1)) continue;
        size_t end = right;
        bool rightConstant = ConstantAt(tokens, right, &end);
        std::optional<ColumnRef> rightColumn = rightConstant ? std::nullopt : ColumnFrom(tokens, right, &end);
        if (ArithmeticAt(tokens, end)) continue;
        bool leftConstant = !left && ConstantEndingAt(tokens, i);
        if (left && belongs(*left)) {
            if (rightConstant) AddOnce(found.withConstant, left->column);
            if (rightColumn && !belongs(*rightColumn)) AddOnce(found.withColumn, left->column);
        }
        if (rightColumn && belongs(*rightColumn)) {
            if (leftConstant) AddOnce(found.withConstant, rightColumn->column);
            if (left && !belongs(*left)) AddOnce(found.withColumn, rightColumn->column);
        }
    }
    return found;
}

std::optional<PlanNeed> ReadPlanLine(const std::string& detail) {
    std::vector<Token> tokens = Tokenize(detail);
    if (tokens.size() < 2 || !(tokens[0].Is("SCAN") || tokens[0].Is("SEARCH"))) return std::nullopt;
    size_t at = tokens[1].Is("TABLE") ? 2 : 1;
    if (!At(tokens, at) || !tokens[at].IsName()) return std::nullopt;
    PlanNeed need{tokens[at].text, {}};
    bool automatic = false;
    for (size_t i = at + 1; i < tokens.size(); ++i) {
        if (tokens[i].Is("VIRTUAL")) return std::nullopt;
        automatic = automatic || tokens[i].Is("AUTOMATIC");
        // "(A=? AND B=?)": the columns the automatic index is keyed on.
        if (automatic && tokens[i].IsName() && IsPunctAt(tokens, i + 1, '=') && IsPunctAt(tokens, i + 2, '?'))
            need.columns.push_back(tokens[i].text);
    }
    if (tokens[0].Is("SCAN")) return need;
    if (need.columns.empty()) return std::nullopt;
    return need;
}

}  // namespace ado::sql
