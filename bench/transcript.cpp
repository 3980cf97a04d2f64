#include "bench/transcript.h"

#include <sqlite3.h>

#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <unordered_map>

#include "bench/transcript_records.h"

namespace bench {

namespace {

struct Running {
    uint32_t id = 0;
    uint64_t rows = 0;
    bool changesRows = false;
    bool historyUpdate = false;
};

struct Recorder {
    std::FILE* file = nullptr;
    bool registered = false;
    uint32_t nextId = 0;
    int64_t changes = 0;
    int64_t historyUpdateNs = 0;
    std::unordered_map<sqlite3_stmt*, Running> running;
    sqlite3_stmt* last = nullptr;  // the statement of the latest row, looked up once per run of rows
    Running* lastRunning = nullptr;
};

Recorder recorder;

bool StartsWithWord(const char* text, const char* word) {
    while (std::isspace(static_cast<unsigned char>(*text))) ++text;
    for (; *word; ++word, ++text)
        if (std::toupper(static_cast<unsigned char>(*text)) != *word) return false;
    return !std::isalnum(static_cast<unsigned char>(*text)) && *text != '_';
}

bool ChangesRows(const char* text) {
    return StartsWithWord(text, "INSERT") || StartsWithWord(text, "UPDATE") || StartsWithWord(text, "DELETE") ||
           StartsWithWord(text, "REPLACE");
}

// A statement's run ended (reset or finalized): its row count follows,
// and the rows it changed are counted.
void Finish(sqlite3_stmt* statement) {
    auto found = recorder.running.find(statement);
    if (found == recorder.running.end()) return;
    WriteRowsRecord(recorder.file, found->second.id, found->second.rows);
    if (found->second.changesRows) recorder.changes += sqlite3_changes(sqlite3_db_handle(statement));
    recorder.running.erase(found);
    recorder.last = nullptr;
}

void Start(sqlite3_stmt* statement, const char* text) {
    Finish(statement);  // a statement run again without a reset in between
    Running run{recorder.nextId++, 0, ChangesRows(text), IsHistoryUserUpdate(text)};
    int parameters = sqlite3_bind_parameter_count(statement);
    char* expanded = parameters > 0 ? sqlite3_expanded_sql(statement) : nullptr;
    WriteStatementRecord(recorder.file, run.id, parameters, sqlite3_sql(statement), expanded ? expanded : "");
    sqlite3_free(expanded);
    recorder.running[statement] = run;
    recorder.last = nullptr;
}

int OnTrace(unsigned type, void*, void* p, void* x) {
    if (!recorder.file) return 0;
    auto* statement = static_cast<sqlite3_stmt*>(p);
    if (type == SQLITE_TRACE_STMT) {
        const char* text = static_cast<const char*>(x);
        if (text[0] == '-' && text[1] == '-') return 0;  // a trigger's program, part of its statement
        Start(statement, text);
    } else if (type == SQLITE_TRACE_ROW) {
        if (statement != recorder.last) {
            auto found = recorder.running.find(statement);
            if (found == recorder.running.end()) return 0;
            recorder.last = statement;
            recorder.lastRunning = &found->second;
        }
        ++recorder.lastRunning->rows;
    } else if (type == SQLITE_TRACE_PROFILE) {
        auto found = recorder.running.find(statement);
        if (found != recorder.running.end() && found->second.historyUpdate)
            recorder.historyUpdateNs += *static_cast<sqlite3_int64*>(x);
        Finish(statement);
    }
    return 0;
}

int InstallTrace(sqlite3* db, char**, const sqlite3_api_routines*) {
    sqlite3_trace_v2(db, SQLITE_TRACE_STMT | SQLITE_TRACE_ROW | SQLITE_TRACE_PROFILE, OnTrace, nullptr);
    return SQLITE_OK;
}

}  // namespace

void StartRecording(const std::string& path) {
    recorder.file = std::fopen(path.c_str(), "wb");
    if (!recorder.file) throw std::runtime_error(path + ": cannot be written");
    if (!recorder.registered) {
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(InstallTrace));
        recorder.registered = true;
    }
}

void MarkSection(const std::string& name) {
    if (!recorder.file) return;
    WriteSectionRecord(recorder.file, name);
    // A floor replayed alongside follows the file: hand it each upgrader's
    // last statements now rather than when the buffer next fills.
    std::fflush(recorder.file);
}

void StopRecording() {
    if (!recorder.file) return;
    std::fclose(recorder.file);
    recorder.file = nullptr;
    recorder.running.clear();
    recorder.last = nullptr;
}

int64_t RecordedRowChanges() { return recorder.changes; }

double RecordedHistoryUpdateSeconds() { return static_cast<double>(recorder.historyUpdateNs) / 1e9; }

bool IsHistoryUserUpdate(const std::string& text) {
    static const std::string kStart = "UPDATE KD_VQ_HISTORY SET USER_";
    return text.compare(0, kStart.size(), kStart) == 0;
}

bool IsPerUserHistoryUpdate(const std::string& text) {
    auto endsWith = [&](const std::string& tail) {
        return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
    };
    return IsHistoryUserUpdate(text) && (endsWith(" AND USER_NAME Is Null") || endsWith(" AND USER_ID Is Null"));
}

}  // namespace bench
