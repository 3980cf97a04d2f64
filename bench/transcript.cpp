#include "bench/transcript.h"

#include <sqlite3.h>

#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace bench {

namespace {

// Record kinds of the transcript file; each is one byte, then fixed-size
// numbers and length-prefixed texts in the machine's byte order.
constexpr char kStatementRecord = 'S';
constexpr char kRowsRecord = 'R';
constexpr char kSectionRecord = 'M';

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

void PutNumber(uint64_t n) { std::fwrite(&n, sizeof n, 1, recorder.file); }

void PutText(const char* text, size_t size) {
    PutNumber(size);
    std::fwrite(text, 1, size, recorder.file);
}

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
    std::fputc(kRowsRecord, recorder.file);
    PutNumber(found->second.id);
    PutNumber(found->second.rows);
    if (found->second.changesRows) recorder.changes += sqlite3_changes(sqlite3_db_handle(statement));
    recorder.running.erase(found);
    recorder.last = nullptr;
}

void Start(sqlite3_stmt* statement, const char* text) {
    Finish(statement);  // a statement run again without a reset in between
    Running run{recorder.nextId++, 0, ChangesRows(text), IsHistoryUserUpdate(text)};
    std::fputc(kStatementRecord, recorder.file);
    PutNumber(run.id);
    int parameters = sqlite3_bind_parameter_count(statement);
    PutNumber(static_cast<uint64_t>(parameters));
    const char* sql = sqlite3_sql(statement);
    PutText(sql, std::char_traits<char>::length(sql));
    if (parameters > 0) {
        char* expanded = sqlite3_expanded_sql(statement);
        PutText(expanded ? expanded : "", expanded ? std::char_traits<char>::length(expanded) : 0);
        sqlite3_free(expanded);
    }
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

// Reads what the recorder wrote.
class TranscriptFile {
public:
    explicit TranscriptFile(const std::string& path) : file_(std::fopen(path.c_str(), "rb")) {
        if (!file_) throw std::runtime_error(path + ": cannot be read");
    }
    ~TranscriptFile() { std::fclose(file_); }
    TranscriptFile(const TranscriptFile&) = delete;
    TranscriptFile& operator=(const TranscriptFile&) = delete;

    int Kind() { return std::fgetc(file_); }
    uint64_t Number() {
        uint64_t n = 0;
        if (std::fread(&n, sizeof n, 1, file_) != 1) throw std::runtime_error("the transcript ends early");
        return n;
    }
    std::string Text() {
        std::string text(Number(), '\0');
        if (!text.empty() && std::fread(&text[0], 1, text.size(), file_) != text.size())
            throw std::runtime_error("the transcript ends early");
        return text;
    }

private:
    std::FILE* file_;
};

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
    std::fputc(kSectionRecord, recorder.file);
    PutText(name.data(), name.size());
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

void ReadTranscript(const std::string& path, const TranscriptHandler& handler) {
    // The row counts come after their statements: read them all first.
    std::vector<uint64_t> rows;
    {
        TranscriptFile file(path);
        for (int kind = file.Kind(); kind != EOF; kind = file.Kind()) {
            if (kind == kStatementRecord) {
                file.Number();
                if (file.Number() > 0) file.Text();
                file.Text();
            } else if (kind == kRowsRecord) {
                uint64_t id = file.Number();
                if (id >= rows.size()) rows.resize(id + 1);
                rows[id] = file.Number();
            } else if (kind == kSectionRecord) {
                file.Text();
            } else {
                throw std::runtime_error(path + ": not a transcript");
            }
        }
    }
    TranscriptFile file(path);
    for (int kind = file.Kind(); kind != EOF; kind = file.Kind()) {
        if (kind == kStatementRecord) {
            TranscriptStatement s;
            uint64_t id = file.Number();
            s.parameters = static_cast<int>(file.Number());
            s.text = file.Text();
            if (s.parameters > 0) s.expanded = file.Text();
            s.rows = id < rows.size() ? rows[id] : 0;
            handler.statement(s);
        } else if (kind == kRowsRecord) {
            file.Number();
            file.Number();
        } else {
            handler.section(file.Text());
        }
    }
}

}  // namespace bench
