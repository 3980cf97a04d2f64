#pragma once
// Criteria of Recordset.Find and Recordset.Filter: clauses "COLUMN op value"
// (op one of = <> < > <= >= LIKE; value a number, 'text' with '' for a
// quote, #date# or #text#, or NULL) joined with AND and OR (AND binds
// tighter, parentheses group). Any text that is not such criteria raises
// BasicError 3001; nothing here may fail otherwise, whatever the input.
//
// Comparison follows the field's type, as ADO converts the criterion's value
// to the field's type: numbers and dates compare as numbers, text compares
// without regard to case, a Null field matches no clause except "= NULL".
// Every comparison goes through a match key, so that an index keyed the
// same way finds exactly the rows a scan finds.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "platform/automation/variant.h"

namespace ado::criteria {

// ---- match keys --------------------------------------------------------------
// A value as comparisons see it: nothing (Null, objects), a number, or text
// folded to lower case.
using MatchKey = std::variant<std::monostate, double, std::string>;

enum class Op { kEqual, kNotEqual, kLess, kGreater, kLessEqual, kGreaterEqual, kLike };
enum class LiteralKind { kNumber, kText, kDate, kNull };

struct Literal {
    LiteralKind kind = LiteralKind::kNull;
    double number = 0;  // kNumber: the value; kDate: the date serial
    std::string text;   // kText: the value; kNumber/kDate: the text as written
};

struct Clause {
    std::string column;
    int columnIndex = -1;  // set by Criteria::Bind
    Op op = Op::kEqual;
    Literal value;
    std::vector<MatchKey> keys;  // the keys the value can equal (LiteralKeys), worked out once
};

// The expression tree: a clause, or an AND / OR of sub-expressions.
struct Node {
    enum class Kind { kClause, kAnd, kOr };
    Kind kind = Kind::kClause;
    size_t clause = 0;  // kClause: index into Criteria::Clauses()
    std::vector<Node> children;
};

class Criteria {
public:
    // Parses criteria; with singleClause (Find) only one clause is allowed.
    static Criteria Parse(const std::string& text, bool singleClause);

    // Resolves every clause's column with lookup (-1: no such column, which
    // raises 3265 as an unknown field does).
    void Bind(const std::function<int(const std::string&)>& lookup);

    const std::vector<Clause>& Clauses() const { return clauses_; }
    const Node& Root() const { return root_; }
    // Whether a row (values indexed by bound column) satisfies the criteria.
    bool Matches(const std::vector<automation::Variant>& row) const;

private:
    std::vector<Clause> clauses_;
    Node root_;
};

// The key of a field value when compared with a literal of this kind. Only
// text fields compared with dates key differently (parsed as dates), so an
// index needs at most two key classes per column.
MatchKey FieldKey(const automation::Variant& value, LiteralKind kind);
// Whether FieldKey depends on kind in the way named above.
inline bool KeysAsDate(LiteralKind kind) { return kind == LiteralKind::kDate; }
// The keys a literal can equal: one per alternative of MatchKey at most.
std::vector<MatchKey> LiteralKeys(const Literal& literal);

bool ClauseMatches(const Clause& clause, const automation::Variant& value);

// LIKE's pattern match: '*' and '%' stand for any run of characters; case
// is ignored.
bool WildcardMatch(const std::string& text, const std::string& pattern);

}  // namespace ado::criteria
