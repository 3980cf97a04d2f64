#include "platform/ado/sqlite/sql_rewrite.h"

#include "platform/ado/sqlite/sql_tokens.h"

namespace ado::sql {
namespace {

// Walks a token list; every read is bounds-checked so that any text is safe.
class Cursor {
public:
    explicit Cursor(const std::vector<Token>& tokens) : t_(tokens) {}

    bool AtEnd() const { return i_ >= t_.size(); }
    size_t Position() const { return i_; }
    const Token* Peek(size_t ahead = 0) const { return i_ + ahead < t_.size() ? &t_[i_ + ahead] : nullptr; }

    bool Take(const char* keyword) {
        if (AtEnd() || !t_[i_].Is(keyword)) return false;
        ++i_;
        return true;
    }
    bool TakePunct(char c) {
        if (AtEnd() || !t_[i_].IsPunct(c)) return false;
        ++i_;
        return true;
    }
    bool TakeName(std::string* name) {
        if (AtEnd() || !t_[i_].IsName()) return false;
        *name = t_[i_++].text;
        return true;
    }
    // name ('.' name)*; all parts in order.
    bool TakeQualifiedName(std::vector<std::string>* parts) {
        std::string part;
        if (!TakeName(&part)) return false;
        parts->assign(1, part);
        while (Peek() && Peek()->IsPunct('.') && Peek(1) && Peek(1)->IsName()) {
            i_ += 1;
            TakeName(&part);
            parts->push_back(part);
        }
        return true;
    }

private:
    const std::vector<Token>& t_;
    size_t i_ = 0;
};

// The tokens of one statement without its trailing semicolon; empty when
// the text holds several statements.
std::vector<Token> SingleStatement(const std::string& sql) {
    std::vector<Token> tokens = Tokenize(sql);
    if (!tokens.empty() && tokens.back().IsPunct(';')) tokens.pop_back();
    for (const Token& t : tokens)
        if (t.IsPunct(';')) return {};
    return tokens;
}

std::optional<Statement> AlterTable(const std::string& sql, const std::vector<Token>& tokens) {
    Cursor c(tokens);
    std::vector<std::string> table;
    if (!c.Take("ALTER") || !c.Take("TABLE") || !c.TakeQualifiedName(&table)) return std::nullopt;
    if (c.Take("ADD")) {
        AddPrimaryKey key{table.back(), {}};
        if (!c.Take("PRIMARY") || !c.Take("KEY") || !c.TakePunct('(')) return std::nullopt;
        do {
            std::string column;
            if (!c.TakeName(&column)) return std::nullopt;
            key.columns.push_back(column);
        } while (c.TakePunct(','));
        if (!c.TakePunct(')') || !c.AtEnd()) return std::nullopt;
        return key;
    }
    AlterColumn alter{table.back(), "", "", false};
    if (!c.Take("ALTER") || !c.Take("COLUMN") || !c.TakeName(&alter.column)) return std::nullopt;
    // The type runs to the closing [NOT] NULL, when there is one.
    size_t typeBegin = c.Position();
    size_t typeEnd = tokens.size();
    if (typeEnd > typeBegin && tokens[typeEnd - 1].Is("NULL")) {
        --typeEnd;
        if (typeEnd > typeBegin && tokens[typeEnd - 1].Is("NOT")) {
            --typeEnd;
            alter.notNull = true;
        }
    }
    if (typeEnd <= typeBegin) return std::nullopt;
    alter.type = sql.substr(tokens[typeBegin].begin, tokens[typeEnd - 1].end - tokens[typeBegin].begin);
    return alter;
}

std::optional<Statement> DropIndexForm(const std::vector<Token>& tokens) {
    Cursor c(tokens);
    std::vector<std::string> name;
    if (!c.Take("DROP") || !c.Take("INDEX") || !c.TakeQualifiedName(&name)) return std::nullopt;
    if (name.size() == 1) {
        std::vector<std::string> table;
        if (!c.Take("ON") || !c.TakeQualifiedName(&table) || !c.AtEnd()) return std::nullopt;
        return DropIndex{name[0], table.back()};
    }
    if (!c.AtEnd() || name.size() > 3) return std::nullopt;
    return DropIndex{name.back(), name[name.size() - 2]};
}

std::optional<Statement> CreateIndexOnOwnerTable(const std::string& sql, const std::vector<Token>& tokens) {
    Cursor c(tokens);
    std::vector<std::string> index;
    if (!c.Take("CREATE")) return std::nullopt;
    c.Take("UNIQUE");
    if (!c.Take("INDEX")) return std::nullopt;
    if (c.Take("IF") && !(c.Take("NOT") && c.Take("EXISTS"))) return std::nullopt;
    if (!c.TakeQualifiedName(&index) || !c.Take("ON")) return std::nullopt;
    size_t tableAt = c.Position();
    std::vector<std::string> table;
    if (!c.TakeQualifiedName(&table) || table.size() < 2) return std::nullopt;
    // Cut "owner." (every part before the last) out of the text.
    size_t cutBegin = tokens[tableAt].begin;
    size_t cutEnd = tokens[c.Position() - 1].begin;
    // "ON[dbo].T" must not become "ONT": keep a blank after ON when none was there.
    const char* gap = cutBegin == tokens[tableAt - 1].end ? " " : "";
    return NativeStatement{sql.substr(0, cutBegin) + gap + sql.substr(cutEnd)};
}

}  // namespace

Statement Classify(const std::string& sql) {
    std::vector<Token> tokens = SingleStatement(sql);
    if (tokens.size() < 3) return NativeStatement{sql};
    std::optional<Statement> special;
    if (tokens[0].Is("ALTER"))
        special = AlterTable(sql, tokens);
    else if (tokens[0].Is("DROP"))
        special = DropIndexForm(tokens);
    else if (tokens[0].Is("CREATE"))
        special = CreateIndexOnOwnerTable(sql, tokens);
    return special ? *special : NativeStatement{sql};
}

std::optional<std::string> WithRowidColumn(const std::string& select) {
    std::vector<Token> tokens = Tokenize(select);
    if (tokens.size() < 2 || !tokens[0].Is("SELECT") || tokens[1].Is("DISTINCT") || tokens[1].Is("ALL"))
        return std::nullopt;
    return select.substr(0, tokens[0].end) + " _rowid_," + select.substr(tokens[0].end);
}

}  // namespace ado::sql
