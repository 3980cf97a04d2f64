#include "bench/transcript_reader.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <thread>
#include <unordered_map>

#include "bench/transcript_records.h"

namespace bench {

namespace {

// How long to wait for the writer before looking at the file again.
constexpr std::chrono::milliseconds kPause(20);

// The writer creates the file when it starts recording, which can be
// after the reader starts.
void WaitForFile(const std::string& path, const std::function<bool()>& writerFinished) {
    while (!std::filesystem::exists(path) && !writerFinished()) std::this_thread::sleep_for(kPause);
}

}  // namespace

void ReadTranscript(const std::string& path, const TranscriptHandler& handler) {
    FollowTranscript(path, handler, [] { return true; });
}

void FollowTranscript(const std::string& path, const TranscriptHandler& handler,
                      const std::function<bool()>& writerFinished) {
    WaitForFile(path, writerFinished);
    // Two cursors over the same file: `behind` hands the records on in
    // order, holding a statement until its row count is known; `ahead`
    // reads on for row counts only while `behind` waits. What lies between
    // them stays in the file rather than in memory: a statement can stay
    // open over a large part of the run.
    TranscriptCursor behind(path), ahead(path);
    std::unordered_map<uint64_t, uint64_t> endedRows;  // found ahead, for statements not handed on yet
    std::optional<TranscriptRecord> held;
    bool finished = false;  // the writer had finished before ahead's latest look
    bool drained = false;   // and ahead has read all it wrote
    for (;;) {
        if (!held) held = behind.Next();
        if (held && held->kind == kSectionRecord) {
            handler.section(held->text);
            held.reset();
            continue;
        }
        if (held && held->kind == kStatementRecord) {
            auto ended = endedRows.find(held->id);
            if (ended != endedRows.end() || drained) {
                uint64_t rows = ended != endedRows.end() ? ended->second : 0;
                if (ended != endedRows.end()) endedRows.erase(ended);
                handler.statement(
                    {std::move(held->text), std::move(held->expanded), held->parameters, rows, held->id});
                held.reset();
                continue;
            }
        }
        if (held && held->kind == kRowsRecord) {  // its count was taken by `ahead`
            if (handler.ended) handler.ended(held->id);
            held.reset();
            continue;
        }
        if (!held && drained) return;

        if (std::optional<TranscriptRecord> record = ahead.Next()) {
            if (record->kind == kRowsRecord) endedRows[record->id] = record->rows;
            continue;
        }
        if (finished) {
            if (ahead.HoldsPartRecord()) throw std::runtime_error(path + ": the transcript ends early");
            drained = true;
        } else if (!(finished = writerFinished())) {
            std::this_thread::sleep_for(kPause);
        }
    }
}

}  // namespace bench
