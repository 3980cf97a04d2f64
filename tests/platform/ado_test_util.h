#pragma once
// Helpers shared by the data-access tests.
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/ado/ado.h"
#include "platform/automation/basic_error.h"
#include "tests/support/answer_file.h"
#include "tests/platform/typed_value.h"
#include "tests/support/test_host.h"
#include "tests/support/transcript_file.h"

namespace ado_test {

// The Err.Number a call raises; 0 when it succeeds.
inline int32_t ErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const automation::BasicError& e) {
        return e.Number();
    }
    return 0;
}

// "number|native|state|description|source" of every Errors entry.
inline std::vector<std::string> DescribeErrors(const ado::Connection& connection) {
    std::vector<std::string> lines;
    const ado::Errors& errors = connection.GetErrors();
    for (int32_t i = 0; i < errors.Count(); ++i) {
        const ado::Error& e = errors.Item(i);
        lines.push_back(std::to_string(e.number) + "|" + std::to_string(e.nativeError) + "|" + e.sqlState + "|" +
                        e.description + "|" + e.source);
    }
    return lines;
}

// Client-side keyset optimistic, as edit recordsets are opened.
inline com::ComPtr<ado::Recordset> OpenEditable(ado::Connection* connection, const std::string& sql) {
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    rs->SetCursorLocation(ado::adUseClient);
    rs->Open(sql, connection, ado::adOpenKeyset, ado::adLockOptimistic);
    return rs;
}

// Server-side forward-only read-only, as read recordsets are opened.
inline com::ComPtr<ado::Recordset> OpenStream(ado::Connection* connection, const std::string& sql) {
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    rs->SetCursorLocation(ado::adUseServer);
    rs->Open(sql, connection, ado::adOpenForwardOnly, ado::adLockReadOnly);
    return rs;
}

// Drives a connection and the recordset last opened on it by steps written
// as text, "verb|argument|...", and answers each step with text, or with
// "E<number>" for the error it raised:
//   first, next, prev, last, filter|CRITERIA and
//   find|CRITERIA[|SKIP[|DIRECTION[|START]]] answer where the recordset
//   stands: its first field's value, BOF, EOF, or EMPTY for both;
//   count, bof, eof, get|FIELD, type|FIELD (the Variant type of its value),
//   row, errors (the connection's Errors entries) and query|SQL (the rows
//   the connection reads, joined by commas) answer what they read;
//   open|SQL opens an editable recordset and stream|SQL a read one
//   (OpenStream); begin answers the nesting level;
//   set|FIELD|VALUE (VALUE as typed_value.h reads it), update, cancel, addnew,
//   save, close, exec|SQL, commit, rollback, outer-begin, outer-commit,
//   outer-rollback and disconnect (closes the connection) answer nothing;
//   extra verbs answer what the caller's function gives for all that
//   follows the verb and its bar.
class Script {
public:
    using Extra = std::map<std::string, std::function<std::string(const std::string& argument)>>;

    Script(ado::Connection& connection, com::ComPtr<ado::Recordset> recordset = {}, Extra extra = {})
        : connection_(connection), rs_(std::move(recordset)), extra_(std::move(extra)) {}

    // The answers of the steps that answer, joined by blanks.
    std::string Run(const std::vector<std::string>& steps) {
        std::string answers;
        for (const std::string& step : steps) {
            std::string answer;
            const int32_t error = ErrorOf([&] { answer = Apply(step); });
            if (error) answer = "E" + std::to_string(error);
            if (!answer.empty()) answers += (answers.empty() ? "" : " ") + answer;
        }
        return answers;
    }

    ado::Recordset& Current() { return *rs_; }

private:
    std::string Apply(const std::string& step) {
        const std::vector<std::string> p = answer_file::Split(step, "|");
        const std::string& verb = p[0];
        // SQL may hold bars of its own: it is all that follows the verb.
        const std::string sql = p.size() > 1 ? step.substr(verb.size() + 1) : "";
        if (extra_.count(verb)) return extra_[verb](sql);
        if (verb == "open") rs_ = OpenEditable(&connection_, sql);
        else if (verb == "stream") rs_ = OpenStream(&connection_, sql);
        else if (verb == "exec") connection_.Execute(sql);
        else if (verb == "begin") return std::to_string(connection_.BeginTrans());
        else if (verb == "commit") connection_.CommitTrans();
        else if (verb == "rollback") connection_.RollbackTrans();
        else if (verb == "outer-begin") connection_.BeginOuterTransaction();
        else if (verb == "outer-commit") connection_.CommitOuterTransaction();
        else if (verb == "outer-rollback") connection_.RollbackOuterTransaction();
        else if (verb == "disconnect") connection_.Close();
        else if (verb == "errors") return answer_file::Join(DescribeErrors(connection_), " / ");
        else if (verb == "query") return answer_file::Join(kdvq::testing::QueryRows(&connection_, sql), ",");
        else if (!rs_) return "no recordset";
        else if (verb == "set") rs_->Set(p[1], typed_value::Read(p[2]));
        else if (verb == "update") rs_->Update();
        else if (verb == "cancel") rs_->CancelUpdate();
        else if (verb == "addnew") rs_->AddNew();
        else if (verb == "save") rs_->Save();
        else if (verb == "close") rs_->Close();
        else if (verb == "count") return std::to_string(rs_->RecordCount());
        else if (verb == "bof") return rs_->BOF() ? "True" : "False";
        else if (verb == "eof") return rs_->EOF() ? "True" : "False";
        else if (verb == "get") return rs_->Get(p[1]).Describe();
        else if (verb == "type") return std::to_string(rs_->Get(p[1]).Type());
        else if (verb == "row") {
            std::string row;
            for (int32_t i = 0; i < rs_->FieldCount(); ++i) row += (i ? "|" : "") + rs_->Fields(i).Value().Describe();
            return row;
        } else return Moved(p);
        return "";
    }

    std::string Moved(const std::vector<std::string>& p) {
        const std::string& verb = p[0];
        if (verb == "first") rs_->MoveFirst();
        else if (verb == "next") rs_->MoveNext();
        else if (verb == "prev") rs_->MovePrevious();
        else if (verb == "last") rs_->MoveLast();
        else if (verb == "filter") rs_->SetFilter(p.size() > 1 ? p[1] : "");
        else if (verb == "find")
            rs_->Find(p[1], p.size() > 2 ? std::stoi(p[2]) : 0, p.size() > 3 ? std::stoi(p[3]) : ado::adSearchForward,
                      p.size() > 4 ? automation::Variant(std::stoi(p[4])) : automation::Variant());
        else return "unknown step " + verb;
        if (rs_->BOF() && rs_->EOF()) return "EMPTY";
        return rs_->BOF() ? "BOF" : rs_->EOF() ? "EOF" : rs_->Fields(0).Value().Describe();
    }

    ado::Connection& connection_;
    com::ComPtr<ado::Recordset> rs_;
    Extra extra_;
};

}  // namespace ado_test
