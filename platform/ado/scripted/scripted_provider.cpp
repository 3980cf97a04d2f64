#include "platform/ado/scripted/scripted_provider.h"

#include <map>

#include "platform/ado/sqlite/sql_tokens.h"

namespace ado {

using automation::Variant;

namespace {

// What the provider and its open cursors share.
struct SharedState {
    std::string name;
    std::function<void(const std::string&)> record;
};

std::string JoinNumbers(const std::vector<int32_t>& numbers) {
    std::string text;
    for (int32_t n : numbers) text += (text.empty() ? "" : ",") + std::to_string(n);
    return text;
}

[[noreturn]] void Fail(const SharedState& state, const std::vector<int32_t>& nativeErrors,
                       const std::string& description) {
    std::vector<Diagnostic> diagnostics;
    for (int32_t n : nativeErrors) diagnostics.push_back(Diagnostic{n, "HY000", description});
    throw ProviderError(state.name, std::move(diagnostics));
}

// The one table after FROM, as written; "" for several tables or none.
std::string SingleFromTable(const std::string& query) {
    std::vector<sql::Token> tokens = sql::Tokenize(query);
    int depth = 0;
    for (size_t i = 0; i < tokens.size(); ++i) {
        const sql::Token& t = tokens[i];
        if (t.IsPunct('(')) ++depth;
        if (t.IsPunct(')')) --depth;
        if (depth != 0 || !t.Is("FROM") || i + 1 >= tokens.size() || !tokens[i + 1].IsName()) continue;
        size_t end = i + 1;
        while (end + 2 < tokens.size() && tokens[end + 1].IsPunct('.') && tokens[end + 2].IsName()) end += 2;
        std::string table = query.substr(tokens[i + 1].begin, tokens[end].end - tokens[i + 1].begin);
        size_t next = end + 1;
        if (next < tokens.size() && tokens[next].IsName() && !tokens[next].Is("WHERE") && !tokens[next].Is("ORDER") &&
            !tokens[next].Is("GROUP") && !tokens[next].Is("JOIN") && !tokens[next].Is("INNER") &&
            !tokens[next].Is("LEFT"))
            ++next;  // an alias
        bool single = next >= tokens.size() || !(tokens[next].IsPunct(',') || tokens[next].Is("JOIN") ||
                                                 tokens[next].Is("INNER") || tokens[next].Is("LEFT"));
        return single ? table : "";
    }
    return "";
}

std::string Assignments(const std::vector<std::string>& names, const std::vector<int>& columns,
                        const std::vector<Variant>& values) {
    std::string text;
    for (size_t i = 0; i < columns.size(); ++i)
        text += (i ? ", " : "") + names[static_cast<size_t>(columns[i])] + "=" + values[i].Describe();
    return text;
}

class ScriptedCursor : public Cursor {
public:
    ScriptedCursor(std::shared_ptr<SharedState> state, ScriptedRows rows, std::string baseTable)
        : state_(std::move(state)), rows_(std::move(rows)), baseTable_(std::move(baseTable)),
          nextKey_(static_cast<RowKey>(rows_.rows.size()) + 1) {}

    const std::vector<std::string>& Columns() const override { return rows_.columns; }

    bool Fetch(std::vector<Variant>& row, RowKey& key) override {
        if (next_ >= rows_.rows.size()) return false;
        row = rows_.rows[next_];
        row.resize(rows_.columns.size(), Variant::Null());
        key = static_cast<RowKey>(++next_);
        return true;
    }

    void Restart() override { next_ = 0; }
    const std::string& BaseTable() const override { return baseTable_; }

    RowKey InsertRow(const std::vector<int>& columns, const std::vector<Variant>& values) override {
        Write("INSERT " + baseTable_ + " (" + Assignments(rows_.columns, columns, values) + ")");
        return nextKey_++;
    }

    void UpdateRow(RowKey key, const std::vector<Variant>&, const std::vector<int>& columns,
                   const std::vector<Variant>& values) override {
        Write("UPDATE " + baseTable_ + " #" + std::to_string(key) + " SET " +
              Assignments(rows_.columns, columns, values));
    }

private:
    void Write(const std::string& line) { state_->record(line); }

    std::shared_ptr<SharedState> state_;
    ScriptedRows rows_;
    std::string baseTable_;
    size_t next_ = 0;
    RowKey nextKey_;
};

}  // namespace

struct ScriptedProvider::Impl {
    std::shared_ptr<SharedState> state;
    std::map<std::string, std::pair<std::vector<int32_t>, std::string>> failingStatements;
    std::map<std::string, ScriptedAnswer> queries;
    Handler handler;
    bool unknownQueriesSucceed = false;

    std::optional<ScriptedAnswer> Consult(const std::string& kind, const std::string& sql) const {
        return handler ? handler(kind, sql) : std::nullopt;
    }

    ScriptedAnswer AnswerFor(const std::string& sql) const {
        if (std::optional<ScriptedAnswer> answer = Consult("OPEN", sql)) return *answer;
        auto exact = queries.find(sql);
        if (exact != queries.end()) return exact->second;
        if (unknownQueriesSucceed) return ScriptedAnswer{};
        return ScriptedAnswer{{942}, "table or view does not exist", {}};
    }
};

ScriptedProvider::ScriptedProvider(std::string providerName, std::function<void(const std::string&)> record)
    : impl_(std::make_unique<Impl>()) {
    impl_->state = std::make_shared<SharedState>();
    impl_->state->name = std::move(providerName);
    impl_->state->record = record ? std::move(record) : [](const std::string&) {};
}

ScriptedProvider::~ScriptedProvider() = default;

void ScriptedProvider::FailExecute(const std::string& sql, std::vector<int32_t> nativeErrors, std::string description) {
    impl_->failingStatements[sql] = {std::move(nativeErrors), std::move(description)};
}

void ScriptedProvider::AnswerQuery(const std::string& sql, ScriptedRows rows) {
    impl_->queries[sql] = ScriptedAnswer{{}, "", std::move(rows)};
}

void ScriptedProvider::FailQuery(const std::string& sql, int32_t nativeError, std::string description) {
    impl_->queries[sql] = ScriptedAnswer{{nativeError}, std::move(description), {}};
}

void ScriptedProvider::SetHandler(Handler handler) { impl_->handler = std::move(handler); }

void ScriptedProvider::SetUnknownQueriesSucceed(bool succeed) { impl_->unknownQueriesSucceed = succeed; }

std::string ScriptedProvider::Name() const { return impl_->state->name; }

void ScriptedProvider::Execute(const std::string& sql) {
    SharedState& state = *impl_->state;
    std::vector<int32_t> errors;
    std::string description;
    if (std::optional<ScriptedAnswer> answer = impl_->Consult("EXEC", sql)) {
        errors = answer->nativeErrors;
        description = answer->description;
    } else if (auto failing = impl_->failingStatements.find(sql); failing != impl_->failingStatements.end()) {
        errors = failing->second.first;
        description = failing->second.second;
    }
    if (errors.empty()) {
        state.record("EXEC " + sql);
        return;
    }
    state.record("EXEC " + sql + " => ERROR " + JoinNumbers(errors));
    Fail(state, errors, description);
}

std::unique_ptr<Cursor> ScriptedProvider::OpenQuery(const std::string& sql, const QueryOptions& options) {
    SharedState& state = *impl_->state;
    ScriptedAnswer answer = impl_->AnswerFor(sql);
    if (!answer.nativeErrors.empty()) {
        state.record("OPEN " + sql + " => ERROR " + JoinNumbers(answer.nativeErrors));
        Fail(state, answer.nativeErrors, answer.description);
    }
    state.record("OPEN " + sql);
    return std::make_unique<ScriptedCursor>(impl_->state, std::move(answer.rows),
                                            options.editable ? SingleFromTable(sql) : "");
}

void ScriptedProvider::BeginTrans() { impl_->state->record("BEGIN"); }
void ScriptedProvider::CommitTrans() { impl_->state->record("COMMIT"); }
void ScriptedProvider::RollbackTrans() { impl_->state->record("ROLLBACK"); }

}  // namespace ado
