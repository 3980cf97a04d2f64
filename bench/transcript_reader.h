#pragma once
// Reading a transcript back in the order its statements started, each
// with the rows the run read from it, either once it is complete or while
// the run is still writing it.
#include <cstdint>
#include <functional>
#include <string>

namespace bench {

struct TranscriptStatement {
    std::string text;      // as prepared, with parameter marks
    std::string expanded;  // with the bound values written in; empty without marks
    int parameters = 0;
    uint64_t rows = 0;     // rows the run read from it; 0 when it never ended
    uint64_t id = 0;       // numbers the statements in the order they started
};

struct TranscriptHandler {
    std::function<void(const TranscriptStatement&)> statement;
    std::function<void(const std::string& name)> section;
    // Where the statement ended (reset or finished) among the others: a
    // statement that stays open keeps the run's writes in one transaction.
    // Optional.
    std::function<void(uint64_t id)> ended;
};

// Reads a complete transcript. Raises std::runtime_error for a file that
// is not a transcript or that ends inside a record.
void ReadTranscript(const std::string& path, const TranscriptHandler& handler);

// Reads a transcript while it is being written, waiting for the file to
// appear and for more of it, until writerFinished answers true and all
// that was written has been handed on. A statement is handed on once it
// has ended (a statement can stay open while later ones run, so later
// statements wait behind it); those that never ended come with 0 rows
// when the writer has finished. Raises as ReadTranscript does.
void FollowTranscript(const std::string& path, const TranscriptHandler& handler,
                      const std::function<bool()>& writerFinished);

}  // namespace bench
