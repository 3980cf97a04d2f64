#pragma once
// A tokenizer for SQL text: words, quoted identifiers, strings, numbers
// and punctuation, each with its place in the text so that statements can
// be rewritten around the tokens. Comments and blanks are skipped. It
// accepts any input: an unterminated quote runs to the end of the text.
#include <cstddef>
#include <string>
#include <vector>

namespace ado::sql {

struct Token {
    enum class Kind { kWord, kQuotedName, kString, kNumber, kPunct };
    Kind kind = Kind::kPunct;
    std::string text;  // words and names without their quotes; punctuation as written
    size_t begin = 0;  // offsets of the token in the statement text
    size_t end = 0;

    bool IsName() const { return kind == Kind::kWord || kind == Kind::kQuotedName; }
    // A bare word equal to keyword, ignoring case (keyword in upper case).
    bool Is(const char* keyword) const;
    bool IsPunct(char c) const { return kind == Kind::kPunct && text.size() == 1 && text[0] == c; }
};

std::vector<Token> Tokenize(const std::string& text);

// Compares names the way SQL does: without regard to ASCII case.
bool SameName(const std::string& a, const std::string& b);
// A name in double quotes, inner quotes doubled.
std::string QuoteName(const std::string& name);

}  // namespace ado::sql
