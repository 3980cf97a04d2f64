#include "bench/floor_replay.h"

#include <sqlite3.h>

#include <chrono>
#include <map>
#include <stdexcept>
#include <unordered_map>

#include "bench/bound_values.h"
#include "bench/transcript.h"
#include "bench/transcript_reader.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

void Bind(sqlite3_stmt* s, const std::vector<BoundValue>& values) {
    for (size_t i = 0; i < values.size(); ++i) {
        int parameter = static_cast<int>(i) + 1;
        const BoundValue& v = values[i];
        if (const auto* n = std::get_if<int64_t>(&v))
            sqlite3_bind_int64(s, parameter, *n);
        else if (const auto* d = std::get_if<double>(&v))
            sqlite3_bind_double(s, parameter, *d);
        else if (const auto* t = std::get_if<std::string>(&v))
            sqlite3_bind_text(s, parameter, t->data(), static_cast<int>(t->size()), SQLITE_STATIC);
        else if (const auto* b = std::get_if<Blob>(&v))
            sqlite3_bind_blob(s, parameter, b->bytes.data(), static_cast<int>(b->bytes.size()), SQLITE_STATIC);
        else
            sqlite3_bind_null(s, parameter);
    }
}

class Replayer {
public:
    explicit Replayer(const std::string& dbPath) {
        if (sqlite3_open_v2(dbPath.c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            throw std::runtime_error(dbPath + ": cannot be opened");
        Enter(kBetweenUpgraders);
    }
    ~Replayer() {
        for (auto& entry : prepared_) sqlite3_finalize(entry.second);
        sqlite3_close_v2(db_);
    }
    Replayer(const Replayer&) = delete;
    Replayer& operator=(const Replayer&) = delete;

    void Enter(const std::string& name) {
        const std::string& key = name.empty() ? kBetweenUpgraders : name;
        auto found = sectionIndex_.find(key);
        if (found == sectionIndex_.end()) {
            found = sectionIndex_.emplace(key, figures_.sections.size()).first;
            figures_.sections.push_back({key, 0, 0, 0});
        }
        current_ = found->second;
    }

    void Replay(const TranscriptStatement& s) {
        std::vector<BoundValue> values;
        if (s.parameters > 0) {
            std::optional<std::vector<BoundValue>> read = ExtractBoundValues(s.text, s.expanded);
            if (!read) {
                ++figures_.unreadable;
                return;
            }
            values = std::move(*read);
        }
        auto start = Clock::now();
        bool ok = s.parameters > 0 ? RunPrepared(s, values) : RunOnce(s);
        double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        FloorSection& section = figures_.sections[current_];
        section.seconds += seconds;
        if (IsHistoryUserUpdate(s.text)) section.historyUpdateSeconds += seconds;
        ++section.statements;
        figures_.seconds += seconds;
        ++figures_.statements;
        if (!ok) ++figures_.failures;
    }

    FloorFigures Figures() const { return figures_; }

private:
    // Steps as far as the run read: its rows, then one more step that
    // ends the statement when the run read to the end.
    bool Step(sqlite3_stmt* s, uint64_t rows) {
        for (uint64_t i = 0; i <= rows; ++i) {
            int rc = sqlite3_step(s);
            if (rc == SQLITE_DONE) return true;
            if (rc != SQLITE_ROW) return false;
            int columns = sqlite3_column_count(s);
            for (int c = 0; c < columns; ++c)
                if (sqlite3_column_type(s, c) == SQLITE_TEXT) sqlite3_column_bytes(s, c);
        }
        return true;
    }

    bool RunPrepared(const TranscriptStatement& s, const std::vector<BoundValue>& values) {
        sqlite3_stmt*& prepared = prepared_[s.text];
        if (!prepared && sqlite3_prepare_v2(db_, s.text.c_str(), static_cast<int>(s.text.size()), &prepared,
                                            nullptr) != SQLITE_OK)
            return false;
        Bind(prepared, values);
        bool ok = Step(prepared, s.rows);
        sqlite3_reset(prepared);
        sqlite3_clear_bindings(prepared);
        return ok;
    }

    bool RunOnce(const TranscriptStatement& s) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db_, s.text.c_str(), static_cast<int>(s.text.size()), &statement, nullptr) !=
            SQLITE_OK) {
            sqlite3_finalize(statement);
            return false;
        }
        bool ok = Step(statement, s.rows);
        sqlite3_finalize(statement);
        return ok;
    }

    sqlite3* db_ = nullptr;
    std::unordered_map<std::string, sqlite3_stmt*> prepared_;
    std::map<std::string, size_t> sectionIndex_;
    size_t current_ = 0;
    FloorFigures figures_;
};

}  // namespace

FloorFigures ReplayFloor(const std::string& transcriptPath, const std::string& dbPath,
                         const std::function<bool()>& runFinished) {
    Replayer replayer(dbPath);
    FollowTranscript(transcriptPath,
                     {[&](const TranscriptStatement& s) { replayer.Replay(s); },
                      [&](const std::string& name) { replayer.Enter(name); }},
                     runFinished);
    return replayer.Figures();
}

}  // namespace bench
