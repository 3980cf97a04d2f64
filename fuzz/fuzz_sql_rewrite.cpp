// Feeds arbitrary text to the SQLite provider's statement handling: the
// tokenizer, the recognition of the SQL Server forms SQLite lacks, and the
// row-identity column added to queries. None of them may raise anything.
// Besides "no crash, no sanitizer report" it checks:
//   - tokens lie in the text, in order, without overlapping;
//   - a statement run as it is equals the input, unless an owner was cut
//     from an index's table: then it is shorter, holds the input's tokens
//     less the owner's names and dots, and is left alone when classified
//     again;
//   - a recognised form carries a non-empty type or key column list;
//   - the row-identity query is the input with " _rowid_," put in.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "platform/ado/sqlite/sql_rewrite.h"
#include "platform/ado/sqlite/sql_tokens.h"

namespace {

using namespace ado::sql;

void CheckTokens(const std::vector<Token>& tokens, const std::string& text) {
    size_t previousEnd = 0;
    for (const Token& t : tokens) {
        fuzz::Check(previousEnd <= t.begin && t.begin < t.end && t.end <= text.size(),
                    "tokens lie in the text, in order", text);
        previousEnd = t.end;
    }
}

bool SameToken(const Token& a, const Token& b) { return a.kind == b.kind && a.text == b.text; }

// Whether the tokens of part are those of whole less an even, non-zero
// number of names and dots (owner parts with their dots).
bool LacksOwnerParts(const std::vector<Token>& part, const std::vector<Token>& whole) {
    size_t p = 0;
    size_t left = 0;
    for (const Token& w : whole) {
        if (p < part.size() && SameToken(part[p], w)) {
            ++p;
        } else {
            if (!w.IsName() && !w.IsPunct('.')) return false;
            ++left;
        }
    }
    return p == part.size() && left > 0 && left % 2 == 0;
}

void CheckNative(const NativeStatement& native, const std::string& input) {
    if (native.sql == input) return;
    fuzz::Check(native.sql.size() < input.size(), "a rewritten statement is shorter", input);
    fuzz::Check(LacksOwnerParts(Tokenize(native.sql), Tokenize(input)),
                "cutting the owner leaves the other tokens as they were", input);
    Statement again = Classify(native.sql);
    const NativeStatement* stable = std::get_if<NativeStatement>(&again);
    fuzz::Check(stable && stable->sql == native.sql, "a rewritten statement is left alone", input);
}

void CheckClassified(const std::string& input) {
    Statement statement = Classify(input);
    if (const NativeStatement* native = std::get_if<NativeStatement>(&statement)) {
        CheckNative(*native, input);
    } else if (const AlterColumn* alter = std::get_if<AlterColumn>(&statement)) {
        fuzz::Check(!alter->type.empty() && input.find(alter->type) != std::string::npos,
                    "an altered column's type is taken from the text", input);
    } else if (const AddPrimaryKey* key = std::get_if<AddPrimaryKey>(&statement)) {
        fuzz::Check(!key->columns.empty(), "a primary key has columns", input);
    }
}

// Whether shorter is longer with one run of characters cut out of it
// (anywhere, possibly nothing).
bool IsCutFrom(const std::string& shorter, const std::string& longer) {
    if (shorter.size() > longer.size()) return false;
    size_t prefix = 0;
    while (prefix < shorter.size() && shorter[prefix] == longer[prefix]) ++prefix;
    size_t suffix = 0;
    while (suffix < shorter.size() - prefix &&
           shorter[shorter.size() - 1 - suffix] == longer[longer.size() - 1 - suffix])
        ++suffix;
    return prefix + suffix == shorter.size();
}

void CheckRowidColumn(const std::string& input) {
    std::optional<std::string> query = WithRowidColumn(input);
    if (!query) return;
    static const std::string kInserted = " _rowid_,";
    fuzz::Check(query->size() == input.size() + kInserted.size() && IsCutFrom(input, *query) &&
                    query->find(kInserted) != std::string::npos,
                "the row identity is put into the query", input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    CheckTokens(Tokenize(input), input);
    CheckClassified(input);
    CheckRowidColumn(input);
    return 0;
}
