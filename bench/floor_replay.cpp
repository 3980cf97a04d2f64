#include "bench/floor_replay.h"

#include <sqlite3.h>

#include <chrono>
#include <map>
#include <stdexcept>
#include <unordered_map>

#include "bench/bound_values.h"
#include "bench/transcript.h"
#include "bench/transcript_reader.h"
#include "platform/ado/sqlite/helper_indexes.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

// The engine copies texts and blobs, as the run's provider has it do: a
// statement stays open after the values are gone, until the run's end of it.
void Bind(sqlite3_stmt* s, const std::vector<BoundValue>& values) {
    for (size_t i = 0; i < values.size(); ++i) {
        int parameter = static_cast<int>(i) + 1;
        const BoundValue& v = values[i];
        if (const auto* n = std::get_if<int64_t>(&v))
            sqlite3_bind_int64(s, parameter, *n);
        else if (const auto* d = std::get_if<double>(&v))
            sqlite3_bind_double(s, parameter, *d);
        else if (const auto* t = std::get_if<std::string>(&v))
            sqlite3_bind_text(s, parameter, t->data(), static_cast<int>(t->size()), SQLITE_TRANSIENT);
        else if (const auto* b = std::get_if<Blob>(&v))
            sqlite3_bind_blob(s, parameter, b->bytes.data(), static_cast<int>(b->bytes.size()), SQLITE_TRANSIENT);
        else
            sqlite3_bind_null(s, parameter);
    }
}

// Replays each statement as the run ran it: stepped as far as the run
// read when it starts, and left open until the point where the run ended
// it. A statement left open keeps the writes made meanwhile in one
// transaction, as it did in the run (the engine commits an implicit
// transaction when its last open statement ends).
class Replayer {
public:
    Replayer(const std::string& dbPath, bool skipHistoryUpdates, bool skipHelperWork)
        : skipHistoryUpdates_(skipHistoryUpdates), skipHelperWork_(skipHelperWork) {
        if (sqlite3_open_v2(dbPath.c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            throw std::runtime_error(dbPath + ": cannot be opened");
        Enter(kBetweenUpgraders);
    }
    ~Replayer() {
        if (db_) Close();
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
        if (skipHistoryUpdates_ && IsPerUserHistoryUpdate(s.text)) {
            ++figures_.skipped;
            return;
        }
        if (skipHelperWork_ && ado::sqlite::IsHelperIndexWork(s.text)) {
            ++figures_.helperWork;
            return;
        }
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
        bool ok = Start(s, values);
        Count(s.text, std::chrono::duration<double>(Clock::now() - start).count());
        FloorSection& section = figures_.sections[current_];
        ++section.statements;
        ++figures_.statements;
        if (!ok) ++figures_.failures;
    }

    // The run ended the statement here: one more step (the run's last
    // fetch, which found the end when it read everything), then the reset.
    void Ended(uint64_t id) {
        auto found = open_.find(id);
        if (found == open_.end()) return;
        auto start = Clock::now();
        sqlite3_step(found->second.statement);
        std::string text = found->second.text;
        Release(found);
        Count(text, std::chrono::duration<double>(Clock::now() - start).count());
    }

    // Statements the run never ended are ended with the run. Closing the
    // database writes what its log holds back into the file, as closing
    // the run's connection did at the end of the run; it counts as the
    // host's time between upgraders.
    FloorFigures Finish() {
        while (!open_.empty()) Ended(open_.begin()->first);
        Enter(kBetweenUpgraders);
        auto start = Clock::now();
        Close();
        Count("", std::chrono::duration<double>(Clock::now() - start).count());
        return figures_;
    }

private:
    struct OpenStatement {
        sqlite3_stmt* statement;
        std::string text;
        bool kept;  // prepared once for every use of its text
    };

    void Close() {
        for (auto& entry : open_) sqlite3_finalize(entry.second.statement);
        open_.clear();
        for (auto& entry : idle_)
            for (sqlite3_stmt* statement : entry.second) sqlite3_finalize(statement);
        idle_.clear();
        sqlite3_close_v2(db_);
        db_ = nullptr;
    }

    void Count(const std::string& text, double seconds) {
        FloorSection& section = figures_.sections[current_];
        section.seconds += seconds;
        if (IsHistoryUserUpdate(text)) section.historyUpdateSeconds += seconds;
        figures_.seconds += seconds;
    }

    // A prepared statement for the text that is not open. Statements with
    // values bound are kept for the next use, as the run's recordsets keep
    // their row writes; the others are prepared each time, as the run
    // prepares each command it executes.
    sqlite3_stmt* Take(const std::string& text, bool kept) {
        if (kept) {
            std::vector<sqlite3_stmt*>& idle = idle_[text];
            if (!idle.empty()) {
                sqlite3_stmt* statement = idle.back();
                idle.pop_back();
                return statement;
            }
        }
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db_, text.c_str(), static_cast<int>(text.size()), &statement, nullptr) != SQLITE_OK) {
            sqlite3_finalize(statement);
            return nullptr;
        }
        return statement;
    }

    void Release(std::unordered_map<uint64_t, OpenStatement>::iterator open) {
        sqlite3_stmt* statement = open->second.statement;
        if (open->second.kept) {
            sqlite3_reset(statement);
            sqlite3_clear_bindings(statement);
            idle_[open->second.text].push_back(statement);
        } else {
            sqlite3_finalize(statement);
        }
        open_.erase(open);
    }

    // Steps as far as the run read; a statement that has not come to its
    // end stays open until the run's end of it.
    bool Start(const TranscriptStatement& s, const std::vector<BoundValue>& values) {
        bool kept = s.parameters > 0;
        sqlite3_stmt* statement = Take(s.text, kept);
        if (!statement) return false;
        Bind(statement, values);
        auto open = open_.emplace(s.id, OpenStatement{statement, s.text, kept}).first;
        for (uint64_t i = 0; i < s.rows; ++i) {
            int rc = sqlite3_step(statement);
            if (rc == SQLITE_DONE) return true;
            if (rc != SQLITE_ROW) {
                Release(open);
                return false;
            }
            int columns = sqlite3_column_count(statement);
            for (int c = 0; c < columns; ++c)
                if (sqlite3_column_type(statement, c) == SQLITE_TEXT) sqlite3_column_bytes(statement, c);
        }
        return true;
    }

    bool skipHistoryUpdates_;
    bool skipHelperWork_;
    sqlite3* db_ = nullptr;
    std::unordered_map<uint64_t, OpenStatement> open_;
    std::unordered_map<std::string, std::vector<sqlite3_stmt*>> idle_;
    std::map<std::string, size_t> sectionIndex_;
    size_t current_ = 0;
    FloorFigures figures_;
};

}  // namespace

FloorFigures ReplayFloor(const std::string& transcriptPath, const std::string& dbPath,
                         const std::function<bool()>& runFinished, bool skipHistoryUpdates, bool skipHelperWork) {
    Replayer replayer(dbPath, skipHistoryUpdates, skipHelperWork);
    FollowTranscript(transcriptPath,
                     {[&](const TranscriptStatement& s) { replayer.Replay(s); },
                      [&](const std::string& name) { replayer.Enter(name); },
                      [&](uint64_t id) { replayer.Ended(id); }},
                     runFinished);
    return replayer.Finish();
}

}  // namespace bench
