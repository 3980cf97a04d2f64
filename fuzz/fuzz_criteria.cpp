// Feeds arbitrary text to the criteria of Recordset.Find and Filter and
// matches what parses against a fixed row holding every kind of field value.
// Besides "no crash, no sanitizer report" it checks what the recordset
// relies on:
//   - bad criteria raise BasicError 3001 and nothing else;
//   - text that Find accepts, Filter accepts with the same single clause;
//   - an equality clause finds through a column index exactly the values a
//     scan matches (the index answers Find and Filter for large recordsets);
//   - a date literal formats as text that parses back to the same date.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "platform/ado/ado.h"
#include "platform/ado/column_index.h"
#include "platform/ado/criteria.h"
#include "platform/ado/date_text.h"
#include "platform/ado/sqlite/sql_tokens.h"
#include "platform/automation/basic_error.h"
#include "platform/automation/variant.h"

namespace {

using automation::Variant;
using namespace ado::criteria;

struct Field {
    const char* name;
    Variant value;
};

// One value of each kind a provider hands back, named after the columns the
// upgraders search.
const std::vector<Field>& Row() {
    static const std::vector<Field> row = {
        {"NAME", Variant("KDSessionManager")},
        {"TRANSITION_ID", Variant(int32_t{12})},
        {"NODE_TYPE_ID", Variant::Integer(5)},
        {"NODE_ID", Variant(7.0)},
        {"CREATED", Variant::Date(40000.5)},
        {"ACTIVE", Variant::Boolean(true)},
        {"NOTE", Variant::Null()},
        {"EXTRA", Variant::Empty()},
        {"WHEN_TEXT", Variant("2009-07-06 12:00:00")},
        {"AMOUNT_TEXT", Variant(" 12.5 ")},
        {"NEGATIVE_ZERO", Variant(-0.0)},
        {"HUGE", Variant(1e308)},
        {"EARLY", Variant::Date(-1.25)},
        {"PATTERN", Variant("a*b%c'd")},
    };
    return row;
}

std::vector<Variant> RowValues() {
    std::vector<Variant> values;
    for (const Field& f : Row()) values.push_back(f.value);
    return values;
}

// Known columns by name (any case); any other name still lands on some
// column, so that matching runs for every criteria that parses.
int Lookup(const std::string& name) {
    const std::vector<Field>& row = Row();
    for (size_t i = 0; i < row.size(); ++i)
        if (ado::sql::SameName(name, row[i].name)) return static_cast<int>(i);
    return static_cast<int>(std::hash<std::string>()(name) % row.size());
}

std::optional<Criteria> ParseOrRefuse(const std::string& text, bool singleClause) {
    try {
        return Criteria::Parse(text, singleClause);
    } catch (const automation::BasicError& e) {
        fuzz::Check(e.Number() == ado::adErrInvalidArgument, "bad criteria raise 3001", text);
        return std::nullopt;
    }
}

bool SameClauses(const std::vector<Clause>& a, const std::vector<Clause>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        const Literal& x = a[i].value;
        const Literal& y = b[i].value;
        if (a[i].column != b[i].column || a[i].op != b[i].op || x.kind != y.kind || x.text != y.text ||
            !(x.number == y.number))
            return false;
    }
    return true;
}

// The rows (one per value) an index on the clause's column finds for an
// equality clause, the way the recordset looks them up.
std::vector<bool> FoundThroughIndex(const Clause& clause, const std::vector<Variant>& values) {
    std::vector<ado::ColumnIndex::Row> rows;
    for (const Variant& v : values) rows.push_back({v});
    ado::ColumnIndex index(rows, 0, KeysAsDate(clause.value.kind));
    std::vector<bool> found(values.size(), false);
    for (const MatchKey& key : clause.keys)
        if (const ado::PositionList* positions = index.Find(key))
            for (int32_t p : *positions) found[static_cast<size_t>(p)] = true;
    return found;
}

void CheckIndexAgreesWithScan(const Criteria& c, const std::string& text) {
    const std::vector<Variant> values = RowValues();
    for (const Clause& clause : c.Clauses()) {
        if (clause.op != Op::kEqual || clause.value.kind == LiteralKind::kNull) continue;
        std::vector<bool> found = FoundThroughIndex(clause, values);
        for (size_t i = 0; i < values.size(); ++i)
            fuzz::Check(found[i] == ClauseMatches(clause, values[i]), "index finds what a scan matches", text);
    }
}

void CheckDatesRoundTrip(const Criteria& c, const std::string& text) {
    for (const Clause& clause : c.Clauses()) {
        if (clause.value.kind != LiteralKind::kDate) continue;
        double serial = clause.value.number;
        double again = 0;
        fuzz::Check(ado::ParseDateText(ado::FormatDateText(serial), &again) && std::fabs(again - serial) < 1e-6,
                    "a date formats as text that parses back to it", text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::optional<Criteria> find = ParseOrRefuse(text, true);
    std::optional<Criteria> filter = ParseOrRefuse(text, false);
    if (find) {
        fuzz::Check(find->Clauses().size() == 1 && find->Root().kind == Node::Kind::kClause,
                    "Find criteria hold one clause", text);
        fuzz::Check(filter && SameClauses(find->Clauses(), filter->Clauses()),
                    "Filter accepts what Find accepts, alike", text);
    }
    if (!filter) return 0;
    filter->Bind(Lookup);
    filter->Matches(RowValues());
    CheckIndexAgreesWithScan(*filter, text);
    CheckDatesRoundTrip(*filter, text);
    return 0;
}
