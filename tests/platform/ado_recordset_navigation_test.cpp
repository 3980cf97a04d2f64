// Moving, Find and Filter over real SQLite recordsets, driven by small
// scripts: each step answers the current ID (or BOF / EOF / EMPTY), a
// count, a flag, or E<number> for the error it raised.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/platform/ado_test_util.h"
#include "tests/support/test_host.h"

namespace {

using automation::Variant;

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::stringstream in(text);
    std::string part;
    while (std::getline(in, part, separator)) parts.push_back(part);
    if (!text.empty() && text.back() == separator) parts.emplace_back();
    return parts;
}

std::string Where(ado::Recordset& rs) {
    if (rs.BOF() && rs.EOF()) return "EMPTY";
    if (rs.BOF()) return "BOF";
    if (rs.EOF()) return "EOF";
    return rs.Get("ID").Describe();
}

std::string Apply(ado::Recordset& rs, const std::string& op) {
    std::vector<std::string> p = Split(op, '|');
    const std::string& verb = p[0];
    if (verb == "first") rs.MoveFirst();
    else if (verb == "next") rs.MoveNext();
    else if (verb == "prev") rs.MovePrevious();
    else if (verb == "last") rs.MoveLast();
    else if (verb == "count") return std::to_string(rs.RecordCount());
    else if (verb == "bof") return rs.BOF() ? "True" : "False";
    else if (verb == "eof") return rs.EOF() ? "True" : "False";
    else if (verb == "get") return rs.Get(p[1]).Describe();
    else if (verb == "find")
        rs.Find(p[1], p.size() > 2 ? std::stoi(p[2]) : 0, p.size() > 3 ? std::stoi(p[3]) : ado::adSearchForward,
                p.size() > 4 ? Variant(std::stoi(p[4])) : Variant());
    else if (verb == "filter") rs.SetFilter(p.size() > 1 ? p[1] : "");
    else return "unknown step " + verb;
    return Where(rs);
}

std::string RunScript(ado::Recordset& rs, const std::vector<std::string>& ops) {
    std::string out;
    for (const std::string& op : ops) {
        std::string result;
        int32_t error = ado_test::ErrorOf([&] { result = Apply(rs, op); });
        out += (out.empty() ? "" : " ") + (error ? "E" + std::to_string(error) : result);
    }
    return out;
}

struct Script {
    const char* name;
    bool stream;
    const char* sql;
    std::vector<std::string> ops;
    const char* expected;
};

class RecordsetNavigation : public ::testing::TestWithParam<Script> {
protected:
    void SetUp() override {
        connection_ = kdvq::testing::OpenSqlite(dir_.File("nav.db"));
        kdvq::testing::ExecAll(connection_.Get(),
                               "CREATE TABLE T (ID INT, NAME VARCHAR(32), V REAL, D DATETIME);\n"
                               "INSERT INTO T VALUES (1, 'a', 1.5, '2020-01-31 10:00:00');\n"
                               "INSERT INTO T VALUES (2, 'b', NULL, NULL);\n"
                               "INSERT INTO T VALUES (3, 'O''Hara', 2.5, NULL);\n"
                               "INSERT INTO T VALUES (4, 'B', 3, '2019-12-24 00:00:00')");
    }

    kdvq::testing::TempDir dir_;
    com::ComPtr<ado::Connection> connection_;
};

TEST_P(RecordsetNavigation, AnswersEachStep) {
    const Script& s = GetParam();
    com::ComPtr<ado::Recordset> rs = s.stream ? ado_test::OpenStream(connection_.Get(), s.sql)
                                              : ado_test::OpenEditable(connection_.Get(), s.sql);
    EXPECT_EQ(RunScript(*rs, s.ops), s.expected);
}

const char* const kAll = "SELECT * FROM T";
const char* const kNone = "SELECT * FROM T WHERE 1 = 0";
constexpr int32_t kBack = ado::adSearchBackward;

INSTANTIATE_TEST_SUITE_P(
    Ado, RecordsetNavigation,
    ::testing::Values(
        // ---- moving ----
        Script{"client_forward_past_end", false, kAll, {"bof", "next", "next", "next", "next", "next"}, "False 2 3 4 EOF E3021"},
        Script{"client_backward_past_start", false, kAll, {"last", "prev", "prev", "prev", "prev", "prev"}, "4 3 2 1 BOF E3021"},
        Script{"client_first_after_end", false, kAll, {"last", "next", "first", "count"}, "4 EOF 1 4"},
        Script{"client_empty", false, kNone, {"bof", "eof", "count", "first", "last", "next"}, "True True 0 E3021 E3021 E3021"},
        Script{"stream_forward", true, kAll, {"count", "next", "next", "next", "next", "next"}, "-1 2 3 4 EOF E3021"},
        Script{"stream_first_on_first_row_stays", true, kAll, {"first", "next"}, "1 2"},
        Script{"stream_first_later_runs_again", true, kAll, {"next", "next", "first", "next"}, "2 3 1 2"},
        Script{"stream_first_after_end_runs_again", true, kAll, {"next", "next", "next", "next", "first"}, "2 3 4 EOF 1"},
        Script{"stream_cannot_go_back", true, kAll, {"prev", "last", "filter|ID=1"}, "E3251 E3251 E3251"},
        Script{"stream_empty", true, kNone, {"bof", "eof", "count", "first", "next"}, "True True -1 E3021 E3021"},
        Script{"field_names_ignore_case", false, kAll, {"get|NOPE", "get|name"}, "E3265 'a'"},
        // ---- Find (what each criterion matches is in ado_criteria_test) ----
        Script{"find_number", false, kAll, {"find|ID=3"}, "3"},
        Script{"find_includes_current_row", false, kAll, {"find|ID=1"}, "1"},
        Script{"find_text_ignores_case", false, kAll, {"find|NAME='b'", "find|NAME='b'|1"}, "2 4"},
        Script{"find_no_match_forward_is_eof", false, kAll, {"find|ID=9", "find|ID=1"}, "EOF EOF"},
        Script{"find_backward", false, kAll, {"last", "find|NAME='b'|0|-1", "find|NAME='b'|1|-1"}, "4 4 2"},
        Script{"find_no_match_backward_is_bof", false, kAll, {"last", "find|ID=0|0|-1"}, "4 BOF"},
        Script{"find_from_first_bookmark", false, kAll, {"last", "find|ID>1|0|1|1"}, "4 2"},
        Script{"find_from_last_bookmark", false, kAll, {"find|ID<4|0|-1|2"}, "3"},
        Script{"find_unknown_column", false, kAll, {"find|NOPE=1"}, "E3265"},
        Script{"find_two_clauses_refused", false, kAll, {"find|ID=1 AND V=2"}, "E3001"},
        Script{"find_bad_direction", false, kAll, {"find|ID=1|0|5"}, "E3001"},
        Script{"stream_find_onwards", true, kAll, {"find|NAME='b'", "find|NAME='b'|1", "find|ID=1"}, "2 4 EOF"},
        Script{"stream_find_backward_refused", true, kAll, {"find|ID=1|0|-1"}, "E3251"},
        // ---- Filter ----
        Script{"filter_equal", false, kAll, {"filter|NAME='b'", "count", "next", "next"}, "2 2 4 EOF"},
        Script{"filter_and", false, kAll, {"filter|ID>1 AND ID<4", "count", "last"}, "2 2 3"},
        Script{"filter_or", false, kAll, {"filter|ID=1 OR ID=4", "count", "last", "prev"}, "1 2 4 1"},
        Script{"filter_nothing", false, kAll, {"filter|ID=9", "count", "bof", "eof", "first"}, "EMPTY 0 True True E3021"},
        Script{"filter_cleared", false, kAll, {"filter|ID=4", "filter|", "count"}, "4 1 4"},
        Script{"filter_then_find", false, kAll, {"filter|NAME='b'", "find|ID=4", "first", "find|ID=3"}, "2 4 2 EOF"},
        Script{"filter_unknown_column", false, kAll, {"filter|NOPE=1"}, "E3265"}),
    [](const ::testing::TestParamInfo<Script>& info) { return std::string(info.param.name); });

}  // namespace
