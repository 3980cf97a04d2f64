#include "platform/ado/sqlite/sql_tokens.h"

#include <cctype>
#include <cstring>

#include "platform/automation/text_case.h"

namespace ado::sql {
namespace {

bool IsWordChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$' || c == '#' || c == '@'; }

// Reads a quoted run closed by close, where a doubled close stands for one.
size_t ReadQuoted(const std::string& s, size_t i, char close, std::string* out) {
    ++i;
    while (i < s.size()) {
        if (s[i] == close) {
            if (i + 1 < s.size() && s[i + 1] == close) {
                *out += close;
                i += 2;
                continue;
            }
            return i + 1;
        }
        *out += s[i++];
    }
    return i;
}

}  // namespace

bool Token::Is(const char* keyword) const { return kind == Kind::kWord && SameName(text, keyword); }

bool SameName(const std::string& a, const std::string& b) { return automation::SameTextIgnoringCase(a, b); }

std::string QuoteName(const std::string& name) {
    std::string quoted = "\"";
    for (char c : name) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

std::vector<Token> Tokenize(const std::string& s) {
    std::vector<Token> tokens;
    size_t i = 0;
    while (i < s.size()) {
        char c = s[i];
        if (std::isspace(static_cast<unsigned char>(c))) {
            ++i;
            continue;
        }
        if (c == '-' && i + 1 < s.size() && s[i + 1] == '-') {
            while (i < s.size() && s[i] != '\n') ++i;
            continue;
        }
        if (c == '/' && i + 1 < s.size() && s[i + 1] == '*') {
            size_t close = s.find("*/", i + 2);
            i = close == std::string::npos ? s.size() : close + 2;
            continue;
        }
        Token t;
        t.begin = i;
        if (c == '"' || c == '`' || c == '[') {
            t.kind = Token::Kind::kQuotedName;
            i = ReadQuoted(s, i, c == '[' ? ']' : c, &t.text);
        } else if (c == '\'') {
            t.kind = Token::Kind::kString;
            i = ReadQuoted(s, i, '\'', &t.text);
        } else if (std::isdigit(static_cast<unsigned char>(c))) {
            t.kind = Token::Kind::kNumber;
            while (i < s.size() && (std::isalnum(static_cast<unsigned char>(s[i])) || s[i] == '.')) ++i;
            t.text = s.substr(t.begin, i - t.begin);
        } else if (IsWordChar(c)) {
            t.kind = Token::Kind::kWord;
            while (i < s.size() && IsWordChar(s[i])) ++i;
            t.text = s.substr(t.begin, i - t.begin);
        } else {
            t.kind = Token::Kind::kPunct;
            t.text = std::string(1, c);
            ++i;
        }
        t.end = i;
        tokens.push_back(std::move(t));
    }
    return tokens;
}

}  // namespace ado::sql
