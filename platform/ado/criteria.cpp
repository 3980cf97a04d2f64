#include "platform/ado/criteria.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

#include "platform/ado/ado.h"
#include "platform/ado/ado_errors.h"
#include "platform/ado/date_text.h"

namespace ado::criteria {
namespace {

using automation::Variant;

// Deeper nesting than any real criteria is refused rather than risking the
// stack on hostile text.
constexpr int kMaxDepth = 64;

[[noreturn]] void Bad() { RaiseAdo(adErrInvalidArgument, kRecordsetSource); }

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

bool IsIdentStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool IsIdentChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '$'; }

class Parser {
public:
    Parser(const std::string& text, std::vector<Clause>& clauses) : s_(text), clauses_(clauses) {}

    Node ParseAll(bool singleClause) {
        Node root = singleClause ? ParseClause() : ParseOr(0);
        SkipBlanks();
        if (i_ != s_.size()) Bad();
        return root;
    }

private:
    void SkipBlanks() {
        while (i_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[i_]))) ++i_;
    }

    // Consumes a keyword (AND, OR, LIKE, NULL) when it stands as a whole word.
    bool TakeKeyword(const char* word) {
        SkipBlanks();
        size_t n = std::char_traits<char>::length(word);
        if (s_.size() - i_ < n) return false;
        for (size_t k = 0; k < n; ++k)
            if (std::toupper(static_cast<unsigned char>(s_[i_ + k])) != word[k]) return false;
        if (i_ + n < s_.size() && IsIdentChar(s_[i_ + n])) return false;
        i_ += n;
        return true;
    }

    Node ParseOr(int depth) {
        Node first = ParseAnd(depth);
        if (!LooksAt("OR")) return first;
        Node node{Node::Kind::kOr, 0, {}};
        node.children.push_back(std::move(first));
        while (TakeKeyword("OR")) node.children.push_back(ParseAnd(depth));
        return node;
    }

    Node ParseAnd(int depth) {
        Node first = ParsePrimary(depth);
        if (!LooksAt("AND")) return first;
        Node node{Node::Kind::kAnd, 0, {}};
        node.children.push_back(std::move(first));
        while (TakeKeyword("AND")) node.children.push_back(ParsePrimary(depth));
        return node;
    }

    bool LooksAt(const char* word) {
        size_t saved = i_;
        bool found = TakeKeyword(word);
        i_ = saved;
        return found;
    }

    Node ParsePrimary(int depth) {
        SkipBlanks();
        if (i_ < s_.size() && s_[i_] == '(') {
            if (depth >= kMaxDepth) Bad();
            ++i_;
            Node inner = ParseOr(depth + 1);
            SkipBlanks();
            if (i_ >= s_.size() || s_[i_] != ')') Bad();
            ++i_;
            return inner;
        }
        return ParseClause();
    }

    Node ParseClause() {
        Clause clause;
        clause.column = ParseColumn();
        clause.op = ParseOp();
        clause.value = ParseValue();
        clause.keys = LiteralKeys(clause.value);
        if (clause.value.kind == LiteralKind::kNull && clause.op != Op::kEqual && clause.op != Op::kNotEqual)
            Bad();
        clauses_.push_back(std::move(clause));
        return Node{Node::Kind::kClause, clauses_.size() - 1, {}};
    }

    std::string ParseColumn() {
        SkipBlanks();
        if (i_ < s_.size() && s_[i_] == '[') {
            size_t close = s_.find(']', i_ + 1);
            if (close == std::string::npos || close == i_ + 1) Bad();
            std::string name = s_.substr(i_ + 1, close - i_ - 1);
            i_ = close + 1;
            return name;
        }
        if (i_ >= s_.size() || !IsIdentStart(s_[i_])) Bad();
        size_t start = i_;
        while (i_ < s_.size() && IsIdentChar(s_[i_])) ++i_;
        return s_.substr(start, i_ - start);
    }

    Op ParseOp() {
        SkipBlanks();
        if (TakeKeyword("LIKE")) return Op::kLike;
        if (i_ >= s_.size()) Bad();
        char c = s_[i_];
        char next = i_ + 1 < s_.size() ? s_[i_ + 1] : '\0';
        if (c == '=') { i_ += 1; return Op::kEqual; }
        if (c == '<' && next == '>') { i_ += 2; return Op::kNotEqual; }
        if (c == '<' && next == '=') { i_ += 2; return Op::kLessEqual; }
        if (c == '>' && next == '=') { i_ += 2; return Op::kGreaterEqual; }
        if (c == '<') { i_ += 1; return Op::kLess; }
        if (c == '>') { i_ += 1; return Op::kGreater; }
        Bad();
    }

    Literal ParseValue() {
        SkipBlanks();
        if (i_ >= s_.size()) Bad();
        char c = s_[i_];
        if (c == '\'') return ParseQuoted();
        if (c == '#') return ParseHashed();
        if (TakeKeyword("NULL")) return Literal{LiteralKind::kNull, 0, ""};
        return ParseNumber();
    }

    Literal ParseQuoted() {
        std::string text;
        ++i_;
        for (;;) {
            if (i_ >= s_.size()) Bad();
            if (s_[i_] == '\'') {
                if (i_ + 1 < s_.size() && s_[i_ + 1] == '\'') {
                    text += '\'';
                    i_ += 2;
                    continue;
                }
                ++i_;
                return Literal{LiteralKind::kText, 0, text};
            }
            text += s_[i_++];
        }
    }

    // #...# is a date when it reads as one, otherwise delimited text.
    Literal ParseHashed() {
        size_t close = s_.find('#', i_ + 1);
        if (close == std::string::npos) Bad();
        std::string inner = s_.substr(i_ + 1, close - i_ - 1);
        i_ = close + 1;
        double serial = 0;
        if (ParseDateText(inner, &serial)) return Literal{LiteralKind::kDate, serial, inner};
        return Literal{LiteralKind::kText, 0, inner};
    }

    Literal ParseNumber() {
        size_t start = i_;
        std::string digits;
        if (i_ < s_.size() && (s_[i_] == '-' || s_[i_] == '+')) {
            if (s_[i_] == '-') digits += '-';
            ++i_;
        }
        if (i_ < s_.size() && s_[i_] == '$') ++i_;  // currency sign allowed before the digits
        size_t numberStart = i_;
        while (i_ < s_.size() && (std::isdigit(static_cast<unsigned char>(s_[i_])) || s_[i_] == '.')) ++i_;
        if (i_ < s_.size() && (s_[i_] == 'e' || s_[i_] == 'E')) {
            ++i_;
            if (i_ < s_.size() && (s_[i_] == '-' || s_[i_] == '+')) ++i_;
            while (i_ < s_.size() && std::isdigit(static_cast<unsigned char>(s_[i_]))) ++i_;
        }
        if (i_ < s_.size() && IsIdentChar(s_[i_])) Bad();  // e.g. an unquoted word
        digits.append(s_, numberStart, i_ - numberStart);
        double value = 0;
        auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (result.ec != std::errc() || result.ptr != digits.data() + digits.size() || !std::isfinite(value)) Bad();
        return Literal{LiteralKind::kNumber, value == 0 ? 0.0 : value, s_.substr(start, i_ - start)};
    }

    const std::string& s_;
    size_t i_ = 0;
    std::vector<Clause>& clauses_;
};

bool NodeMatches(const Node& node, const std::vector<Clause>& clauses, const std::vector<Variant>& row) {
    switch (node.kind) {
        case Node::Kind::kClause: {
            const Clause& c = clauses[node.clause];
            return ClauseMatches(c, row[static_cast<size_t>(c.columnIndex)]);
        }
        case Node::Kind::kAnd:
            return std::all_of(node.children.begin(), node.children.end(),
                               [&](const Node& n) { return NodeMatches(n, clauses, row); });
        case Node::Kind::kOr:
            return std::any_of(node.children.begin(), node.children.end(),
                               [&](const Node& n) { return NodeMatches(n, clauses, row); });
    }
    return false;
}

// The text form a field has for LIKE (nullopt for values without one).
bool FieldText(const Variant& value, std::string* out) {
    switch (value.Type()) {
        case automation::vtString: *out = value.AsString(); return true;
        case automation::vtInteger:
        case automation::vtLong:
        case automation::vtDouble:
        case automation::vtBoolean: *out = value.CStr(); return true;
        case automation::vtDate: *out = FormatDateText(value.CDate()); return true;
        default: return false;
    }
}

bool Ordered(Op op, int comparison) {
    switch (op) {
        case Op::kEqual: return comparison == 0;
        case Op::kNotEqual: return comparison != 0;
        case Op::kLess: return comparison < 0;
        case Op::kGreater: return comparison > 0;
        case Op::kLessEqual: return comparison <= 0;
        case Op::kGreaterEqual: return comparison >= 0;
        case Op::kLike: return false;
    }
    return false;
}

}  // namespace

Criteria Criteria::Parse(const std::string& text, bool singleClause) {
    Criteria c;
    Parser parser(text, c.clauses_);
    c.root_ = parser.ParseAll(singleClause);
    return c;
}

void Criteria::Bind(const std::function<int(const std::string&)>& lookup) {
    for (Clause& c : clauses_) {
        c.columnIndex = lookup(c.column);
        if (c.columnIndex < 0) RaiseAdo(adErrItemNotFound, kRecordsetSource);
    }
}

bool Criteria::Matches(const std::vector<Variant>& row) const { return NodeMatches(root_, clauses_, row); }

MatchKey FieldKey(const Variant& value, LiteralKind kind) {
    switch (value.Type()) {
        case automation::vtInteger:
        case automation::vtLong:
        case automation::vtDouble:
        case automation::vtBoolean:
        case automation::vtDate: {
            double d = value.CDbl();
            return d == 0 ? 0.0 : d;  // +0 and -0 are one key
        }
        case automation::vtString: {
            double serial = 0;
            if (KeysAsDate(kind) && ParseDateText(value.AsString(), &serial)) return serial;
            return Lower(value.AsString());
        }
        default:
            return std::monostate{};
    }
}

std::vector<MatchKey> LiteralKeys(const Literal& literal) {
    switch (literal.kind) {
        case LiteralKind::kNumber: return {literal.number, Lower(literal.text)};
        case LiteralKind::kDate: return {literal.number};
        case LiteralKind::kText: {
            std::vector<MatchKey> keys{Lower(literal.text)};
            double number = 0;
            if (automation::ParseBasicNumber(literal.text, &number) && std::isfinite(number))
                keys.emplace_back(number == 0 ? 0.0 : number);
            else if (ParseDateText(literal.text, &number))
                keys.emplace_back(number);
            return keys;
        }
        case LiteralKind::kNull: return {};
    }
    return {};
}

bool ClauseMatches(const Clause& clause, const Variant& value) {
    bool isNull = value.IsNull() || value.IsEmpty();
    if (clause.value.kind == LiteralKind::kNull) {
        return clause.op == Op::kEqual ? isNull : (clause.op == Op::kNotEqual && !isNull);
    }
    if (isNull) return false;
    if (clause.op == Op::kLike) {
        std::string text;
        return FieldText(value, &text) && WildcardMatch(text, clause.value.text);
    }
    MatchKey field = FieldKey(value, clause.value.kind);
    if (std::holds_alternative<std::monostate>(field)) return false;
    for (const MatchKey& key : clause.keys) {
        if (key.index() != field.index()) continue;
        int comparison = 0;
        if (const double* d = std::get_if<double>(&field)) {
            double k = std::get<double>(key);
            comparison = *d < k ? -1 : (*d > k ? 1 : 0);
        } else {
            comparison = std::get<std::string>(field).compare(std::get<std::string>(key));
        }
        return Ordered(clause.op, comparison);
    }
    return false;
}

bool WildcardMatch(const std::string& text, const std::string& pattern) {
    auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    // Greedy match with one back-tracking point: linear in practice and at
    // worst text length times pattern length.
    size_t t = 0, p = 0, starP = std::string::npos, starT = 0;
    while (t < text.size()) {
        if (p < pattern.size() && (pattern[p] == '*' || pattern[p] == '%')) {
            starP = p++;
            starT = t;
        } else if (p < pattern.size() && same(pattern[p], text[t])) {
            ++p;
            ++t;
        } else if (starP != std::string::npos) {
            p = starP + 1;
            t = ++starT;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && (pattern[p] == '*' || pattern[p] == '%')) ++p;
    return p == pattern.size();
}

}  // namespace ado::criteria
