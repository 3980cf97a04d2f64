// Feeds arbitrary text to the SQLite provider's statement handling: the
// tokenizer, the recognition of the SQL Server forms SQLite lacks, and the
// row-identity column added to queries. None of them may raise anything.
// Besides "no crash, no sanitizer report" it checks:
//   - tokens lie in the text, in order, without overlapping;
//   - a statement run as it is equals the input, unless an owner was cut
//     from an index's table: then it is the input with one run cut out,
//     holding the input's tokens less that run's, and is left alone when
//     classified again;
//   - a recognised form carries a non-empty type or key column list;
//   - the row-identity query is the input with " _rowid_," put in.
#include <cstddef>
#include <cstdint>
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

// Whether the tokens of part are those of whole with some left out.
bool IsSubsequence(const std::vector<Token>& part, const std::vector<Token>& whole) {
    size_t p = 0;
    for (size_t w = 0; w < whole.size() && p < part.size(); ++w)
        if (SameToken(part[p], whole[w])) ++p;
    return p == part.size();
}

void CheckNative(const NativeStatement& native, const std::string& input) {
    if (native.sql == input) return;
    fuzz::Check(native.sql.size() < input.size() && fuzz::IsCutFrom(native.sql, input),
                "a rewritten statement is the input with one run cut out", input);
    std::vector<Token> before = Tokenize(input);
    std::vector<Token> after = Tokenize(native.sql);
    fuzz::Check(after.size() < before.size() && IsSubsequence(after, before),
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

void CheckRowidColumn(const std::string& input) {
    std::optional<std::string> query = WithRowidColumn(input);
    if (!query) return;
    static const std::string kInserted = " _rowid_,";
    fuzz::Check(query->size() == input.size() + kInserted.size() && fuzz::IsCutFrom(input, *query) &&
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
