#pragma once
// The records of a transcript file: each is one kind byte, then fixed-size
// numbers and length-prefixed texts in the machine's byte order. Written
// through stdio by the recording process; read back, possibly while that
// process is still writing, through a cursor that never takes a record
// the writer has only partly written.
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

constexpr char kStatementRecord = 'S';  // a statement started: id, parameter count, text, expanded text
constexpr char kRowsRecord = 'R';       // a statement ended: id, rows read from it
constexpr char kSectionRecord = 'M';    // an upgrader's work began (its name) or ended (empty)

// The expanded text is written only when the statement has parameters.
void WriteStatementRecord(std::FILE* file, uint64_t id, int parameters, std::string_view text,
                          std::string_view expanded);
void WriteRowsRecord(std::FILE* file, uint64_t id, uint64_t rows);
void WriteSectionRecord(std::FILE* file, std::string_view name);

struct TranscriptRecord {
    char kind = 0;
    uint64_t id = 0;         // statement and rows records
    int parameters = 0;      // statement records
    std::string text;        // a statement's text as prepared, or a section's name
    std::string expanded;    // a statement's text with its bound values written in
    uint64_t rows = 0;       // rows records
};

// Reads records from the start of a file that may still be growing.
class TranscriptCursor {
public:
    // Raises std::runtime_error when the file cannot be opened.
    explicit TranscriptCursor(const std::string& path);
    ~TranscriptCursor();
    TranscriptCursor(const TranscriptCursor&) = delete;
    TranscriptCursor& operator=(const TranscriptCursor&) = delete;

    // The next whole record, or nothing while the file holds no more of
    // it; a later call sees what was written since. Raises
    // std::runtime_error for a record of no known kind.
    std::optional<TranscriptRecord> Next();
    // Bytes read that do not make a whole record yet.
    bool HoldsPartRecord() const { return start_ < bytes_.size(); }

private:
    std::optional<TranscriptRecord> Decode();
    bool ReadMore();

    std::string path_;
    int fd_ = -1;
    std::vector<char> bytes_;  // read from the file, from the first record not yet taken
    size_t start_ = 0;         // where that record begins in bytes_
};

}  // namespace bench
