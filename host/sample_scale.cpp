#include "host/sample_scale.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <variant>
#include <vector>

#include "host/bad_input.h"
#include "host/sample_repository.h"
#include "platform/ado/provider.h"
#include "platform/ado/sqlite/sqlite_handle.h"

namespace kdhost {

namespace {

using ado::sqlite::Statement;

// The sample's node types are ids 1 to 12: the first four belong to the
// session extension, the other eight to the workflow extension. Generated
// rows use them in turn, and a role only meets objects of one extension,
// so that the extension of every role can be told from its objects.
constexpr int kNodeTypes = 12;
constexpr int kSessionNodeTypes = 4;
constexpr int kWorkflowNodeTypes = kNodeTypes - kSessionNodeTypes;

// A node type (0-based) of the role group: group 0 is the session
// extension's, group 1 the workflow extension's.
int TypeOfGroup(int64_t group, int64_t k) {
    return group == 0 ? static_cast<int>(k % kSessionNodeTypes)
                      : kSessionNodeTypes + static_cast<int>(k % kWorkflowNodeTypes);
}

// The n-th row (0-based, n < count) among rows whose node type cycles
// with the row number: row = kNodeTypes * m + type; m wraps within the rows
// that exist; -1 when no such row exists.
int64_t RowOfType(int64_t count, int64_t m, int type) {
    int64_t cycles = std::max<int64_t>(1, count / kNodeTypes);
    int64_t row = kNodeTypes * (m % cycles) + type;
    return row < count ? row : -1;
}

std::string DateText(int64_t i) {
    char text[32];
    std::snprintf(text, sizeof text, "2008-%02d-%02d %02d:%02d:00", static_cast<int>(1 + i % 12),
                  static_cast<int>(1 + (i / 12) % 28), static_cast<int>((i / 336) % 24),
                  static_cast<int>((i / 8064) % 60));
    return text;
}

std::string Numbered(const char* format, int64_t n) {
    char text[64];
    std::snprintf(text, sizeof text, format, static_cast<long long>(n));
    return text;
}

using Value = std::variant<std::nullptr_t, int64_t, std::string>;

// Writes rows through prepared statements on one open database.
class RowWriter {
public:
    explicit RowWriter(sqlite3* db) : db_(db) {}

    Statement Prepare(const std::string& sql) { return ado::sqlite::Prepare(db_, sql); }

    void Row(const Statement& statement, const std::vector<Value>& values) {
        sqlite3_stmt* s = statement.get();
        for (size_t i = 0; i < values.size(); ++i) {
            int parameter = static_cast<int>(i) + 1;
            if (const auto* n = std::get_if<int64_t>(&values[i]))
                sqlite3_bind_int64(s, parameter, *n);
            else if (const auto* t = std::get_if<std::string>(&values[i]))
                sqlite3_bind_text(s, parameter, t->c_str(), static_cast<int>(t->size()), SQLITE_TRANSIENT);
            else
                sqlite3_bind_null(s, parameter);
        }
        ado::sqlite::RunToEnd(db_, s);
        sqlite3_reset(s);
    }

    int64_t MaxOf(const std::string& column, const std::string& table) {
        Statement s = Prepare("SELECT COALESCE(MAX(" + column + "), 0) FROM " + table);
        int64_t value = sqlite3_step(s.get()) == SQLITE_ROW ? sqlite3_column_int64(s.get(), 0) : 0;
        return value;
    }

    void Execute(const std::string& sql) { ado::sqlite::ExecuteAll(db_, sql); }

private:
    sqlite3* db_;
};

// Fills the tables; ids continue after the largest one already there.
class SampleGrower {
public:
    SampleGrower(RowWriter& w, const SampleScaleCounts& c) : w_(w), c_(c) {
        stateBase_ = w_.MaxOf("STATE_ID", "KD_VQ_STATE");
        transitionBase_ = w_.MaxOf("TRANSITION_ID", "KD_VQ_TRANSITION");
        roleBase_ = w_.MaxOf("ROLE_ID", "KD_VQ_ROLE");
        filterBase_ = w_.MaxOf("ID", "KD_VQ_FILTERS");
        taskBase_ = w_.MaxOf("TASK_ID", "KD_VQ_TASKS");
        userBase_ = w_.MaxOf("USER_ID", "KD_VQ_USER");
        sessionBase_ = w_.MaxOf("SESSION_ID", "KD_SESSION");
        designBase_ = w_.MaxOf("ID", "KD_WMS_DESIGN");
        stateBlocks_ = std::max<int64_t>(1, c_.states / kNodeTypes);
    }

    void Grow() {
        States();
        Transitions();
        Filters();
        Tasks();
        Subtasks();
        Roles();
        Users();
        History();
        Sessions();
        Designs();
        Sequences();
    }

private:
    int64_t StateId(int64_t block, int type) const { return stateBase_ + 1 + (block % stateBlocks_) * kNodeTypes + type; }

    void States() {
        Statement s = w_.Prepare("INSERT INTO KD_VQ_STATE VALUES (?, ?, ?, ?, ?)");
        for (int64_t i = 0; i < stateBlocks_ * kNodeTypes; ++i)
            w_.Row(s, {stateBase_ + 1 + i, 1 + i % kNodeTypes, Numbered("State %lld", i), 1 + i / kNodeTypes,
                       std::string("A generated state")});
    }

    void Transitions() {
        Statement t = w_.Prepare("INSERT INTO KD_VQ_TRANSITION VALUES (?, ?, ?)");
        Statement from = w_.Prepare("INSERT INTO KD_VQ_TRANSITION_FROM_STATE VALUES (?, ?)");
        Statement to = w_.Prepare("INSERT INTO KD_VQ_TRANSITION_TO_STATE VALUES (?, ?)");
        for (int64_t x = 0; x < c_.transitions; ++x) {
            int64_t id = transitionBase_ + 1 + x;
            int type = static_cast<int>(x % kNodeTypes);
            int64_t block = x / kNodeTypes;
            w_.Row(t, {id, Numbered("Transition %lld", x), std::string("A generated transition")});
            w_.Row(from, {id, StateId(block, type)});
            // One to three targets, all of the transition's node type.
            for (int64_t k = 0; k <= x % 3; ++k) w_.Row(to, {id, StateId(block + 1 + k, type)});
        }
    }

    void Filters() {
        Statement s = w_.Prepare("INSERT INTO KD_VQ_FILTERS VALUES (?, ?, ?, ?)");
        for (int64_t f = 0; f < c_.filters; ++f) {
            int type = static_cast<int>(f % kNodeTypes);
            const char* progid = type < kSessionNodeTypes ? "kdSessionFilters.ByState" : "kdWorkflowFilters.ByState";
            w_.Row(s, {filterBase_ + 1 + f, Numbered("Filter %lld", f), std::string(progid),
                       StateId(f / kNodeTypes, type)});
        }
    }

    void Tasks() {
        Statement s = w_.Prepare("INSERT INTO KD_VQ_TASKS VALUES (?, ?, ?, ?, ?, ?, ?)");
        for (int64_t k = 0; k < c_.tasks; ++k)
            w_.Row(s, {taskBase_ + 1 + k, Numbered("Task %lld", k), std::string("A generated task"), nullptr,
                       1 + k % kNodeTypes, 1 + k / kNodeTypes, int64_t{1}});
    }

    void Subtasks() {
        Statement s = w_.Prepare("INSERT INTO KD_VQ_SUBTASKS VALUES (?, ?, ?, ?)");
        for (int64_t k = 0; k < c_.subtasks; ++k)
            w_.Row(s, {taskBase_ + 1 + k % std::max<int64_t>(1, c_.tasks), Numbered("Subtask %lld", k),
                       1 + k / std::max<int64_t>(1, c_.tasks), std::string("kdGeneratedSubtasks.clsStep")});
    }

    void Roles() {
        Statement role = w_.Prepare("INSERT INTO KD_VQ_ROLE VALUES (?, ?, ?)");
        Statement state = w_.Prepare("INSERT INTO KD_VQ_STATE_ROLE VALUES (?, ?)");
        Statement filter = w_.Prepare("INSERT INTO KD_VQ_FILTER_ROLE VALUES (?, ?)");
        Statement task = w_.Prepare("INSERT INTO KD_VQ_TASK_ROLE VALUES (?, ?)");
        Statement transition = w_.Prepare("INSERT INTO KD_VQ_TRANSITION_ROLE VALUES (?, ?)");
        for (int64_t r = 0; r < c_.roles; ++r) {
            int64_t id = roleBase_ + 1 + r;
            int64_t group = r % 2;
            w_.Row(role, {id, Numbered("Role %lld", r), std::string("A generated role")});
            for (int64_t j = 0; j < 3; ++j) w_.Row(state, {StateId(r * 3 + j, TypeOfGroup(group, r + j)), id});
            int64_t f = RowOfType(c_.filters, r, TypeOfGroup(group, r));
            if (f >= 0) w_.Row(filter, {filterBase_ + 1 + f, id});
            for (int64_t j = 0; j < 2; ++j) {
                int64_t k = RowOfType(c_.tasks, r * 2 + j, TypeOfGroup(group, r + j));
                if (k >= 0) w_.Row(task, {taskBase_ + 1 + k, id});
            }
            for (int64_t j = 0; j < 3; ++j) {
                int64_t x = RowOfType(c_.transitions, r * 3 + j, TypeOfGroup(group, r + j));
                if (x >= 0) w_.Row(transition, {transitionBase_ + 1 + x, id});
            }
        }
    }

    std::string UserName(int64_t u) const { return Numbered("user%05lld", u); }

    void Users() {
        Statement user = w_.Prepare("INSERT INTO KD_VQ_USER VALUES (?, ?, ?)");
        Statement userRole = w_.Prepare("INSERT INTO KD_VQ_USER_ROLE VALUES (?, ?)");
        for (int64_t u = 0; u < c_.users; ++u) {
            int64_t id = userBase_ + 1 + u;
            w_.Row(user, {id, UserName(u), std::string("A generated user")});
            for (int64_t j = 0; j < 2; ++j) w_.Row(userRole, {id, roleBase_ + 1 + (u * 2 + j) % c_.roles});
        }
    }

    void History() {
        // Sessions, designs and work requests, as the sample's history has.
        static const int64_t kHistoryNodeTypes[] = {1, 5, 6};
        Statement s = w_.Prepare("INSERT INTO KD_VQ_HISTORY VALUES (?, ?, ?, ?, ?, NULL)");
        for (int64_t h = 0; h < c_.historyRows; ++h)
            w_.Row(s, {kHistoryNodeTypes[h % 3], 1 + h / 3 % std::max<int64_t>(1, c_.designs),
                       Numbered("GISAPP%02lld", 1 + h % 4), DateText(h), std::string("Transition generated")});
    }

    void Sessions() {
        Statement session = w_.Prepare("INSERT INTO KD_SESSION VALUES (?, ?, ?, ?, ?, NULL)");
        Statement mod = w_.Prepare("INSERT INTO KD_SESSION_MODS VALUES (?, ?, ?, ?, ?)");
        for (int64_t i = 0; i < c_.sessions; ++i)
            w_.Row(session, {sessionBase_ + 1 + i, Numbered("Session %lld", i), std::string("A generated session"),
                             UserName(i % c_.users), DateText(i)});
        for (int64_t m = 0; m < c_.sessionModifications; ++m) {
            // One in fifty by an editor who has left: the move drops those.
            std::string user = m % 50 == 49 ? std::string("contractor7") : UserName(m % c_.users);
            w_.Row(mod, {sessionBase_ + 1 + m % c_.sessions, user, std::string("Session edited"), DateText(m),
                         1 + m % 4});
        }
    }

    void Designs() {
        Statement s = w_.Prepare("INSERT INTO KD_WMS_DESIGN VALUES (?, ?, ?, ?, NULL, ?, ?, ?)");
        for (int64_t d = 0; d < c_.designs; ++d) {
            // One design in ten was never sent to the field.
            Value packet = d % 10 == 9 ? Value(nullptr) : Value(Numbered("WFM-PKT-%07lld", designBase_ + 1 + d));
            w_.Row(s, {designBase_ + 1 + d, Numbered("Design %lld", d), std::string("A generated design"),
                       1 + d % 3, UserName(d % c_.users), DateText(d), packet});
        }
    }

    // The next free ids, as the framework would have left them.
    void Sequences() {
        Statement s = w_.Prepare("UPDATE KD_VQ_SEQUENCE SET SEQUENCE_VALUE = ? WHERE NAME = ?");
        w_.Row(s, {stateBase_ + stateBlocks_ * kNodeTypes + 1, std::string("Vq_StateId")});
        w_.Row(s, {transitionBase_ + c_.transitions + 1, std::string("Vq_TransitionId")});
        w_.Row(s, {roleBase_ + c_.roles + 1, std::string("Vq_RoleId")});
        w_.Row(s, {userBase_ + c_.users + 1, std::string("Vq_UserId")});
        w_.Row(s, {filterBase_ + c_.filters + 1, std::string("Vq_FilterId")});
        w_.Row(s, {taskBase_ + c_.tasks + 1, std::string("Vq_TaskId")});
    }

    RowWriter& w_;
    const SampleScaleCounts& c_;
    int64_t stateBase_, transitionBase_, roleBase_, filterBase_, taskBase_, userBase_, sessionBase_, designBase_;
    int64_t stateBlocks_;
};

void CheckScale(double scale) {
    if (!(scale > 0) || !std::isfinite(scale)) throw BadInput("the scale must be a positive number");
}

int64_t Scaled(double base, double scale) { return std::max<int64_t>(1, std::llround(base * scale)); }

}  // namespace

int64_t SampleScaleCounts::Total() const {
    return states + transitions + roles + filters + tasks + subtasks + users + historyRows + sessions +
           sessionModifications + designs;
}

SampleScaleCounts ScaledCounts(double scale) {
    SampleScaleCounts c;
    c.states = std::max<int64_t>(kNodeTypes, Scaled(2000, scale) / kNodeTypes * kNodeTypes);
    c.transitions = Scaled(20000, scale);
    c.roles = Scaled(2000, scale);
    c.filters = Scaled(1000, scale);
    c.tasks = Scaled(2000, scale);
    c.subtasks = std::min(Scaled(5000, scale), kMaxSampleSubtasks);
    c.users = Scaled(1000, scale);
    c.historyRows = Scaled(200000, scale);
    c.sessionModifications = Scaled(50000, scale);
    c.sessions = Scaled(5000, scale);
    c.designs = Scaled(20000, scale);
    return c;
}

void ScaleSampleRepository(const std::string& path, double scale) {
    CheckScale(scale);
    SampleScaleCounts counts = ScaledCounts(scale);
    sqlite3* raw = nullptr;
    int rc = sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
    ado::sqlite::Database db(raw);
    if (rc != SQLITE_OK) throw BadInput(path + ": cannot be opened: " + (raw ? sqlite3_errmsg(raw) : "out of memory"));
    RowWriter writer(raw);
    try {
        writer.Execute("BEGIN");
        SampleGrower(writer, counts).Grow();
        writer.Execute("COMMIT");
    } catch (const ado::ProviderError& e) {
        throw BadInput(path + ": the scaled sample could not be written: " + e.what());
    }
}

void CreateScaledSample(const std::string& release, const std::string& path, double scale) {
    if (release != "8.2") throw BadInput("--scale grows the 8.2 sample only, not release " + release);
    CheckScale(scale);
    CreateSampleRepository(release, path);
    try {
        ScaleSampleRepository(path, scale);
    } catch (...) {
        ::unlink(path.c_str());
        throw;
    }
}

}  // namespace kdhost
