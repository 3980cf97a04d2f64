#include "bench/transcript_records.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace bench {

namespace {

void PutNumber(std::FILE* file, uint64_t n) { std::fwrite(&n, sizeof n, 1, file); }

void PutText(std::FILE* file, std::string_view text) {
    PutNumber(file, text.size());
    std::fwrite(text.data(), 1, text.size(), file);
}

// Takes numbers and texts from the bytes read so far; a false answer
// means the record goes on past them.
class ByteReader {
public:
    ByteReader(const char* data, size_t size) : data_(data), size_(size) {}

    bool Number(uint64_t& n) {
        if (size_ - used_ < sizeof n) return false;
        std::memcpy(&n, data_ + used_, sizeof n);
        used_ += sizeof n;
        return true;
    }
    bool Text(std::string& text) {
        uint64_t size = 0;
        if (!Number(size) || size_ - used_ < size) return false;
        text.assign(data_ + used_, size);
        used_ += size;
        return true;
    }
    size_t Used() const { return used_; }

private:
    const char* data_;
    size_t size_;
    size_t used_ = 0;
};

}  // namespace

void WriteStatementRecord(std::FILE* file, uint64_t id, int parameters, std::string_view text,
                          std::string_view expanded) {
    std::fputc(kStatementRecord, file);
    PutNumber(file, id);
    PutNumber(file, static_cast<uint64_t>(parameters));
    PutText(file, text);
    if (parameters > 0) PutText(file, expanded);
}

void WriteRowsRecord(std::FILE* file, uint64_t id, uint64_t rows) {
    std::fputc(kRowsRecord, file);
    PutNumber(file, id);
    PutNumber(file, rows);
}

void WriteSectionRecord(std::FILE* file, std::string_view name) {
    std::fputc(kSectionRecord, file);
    PutText(file, name);
}

TranscriptCursor::TranscriptCursor(const std::string& path) : path_(path), fd_(::open(path.c_str(), O_RDONLY)) {
    if (fd_ < 0) throw std::runtime_error(path + ": cannot be read");
}

TranscriptCursor::~TranscriptCursor() { ::close(fd_); }

std::optional<TranscriptRecord> TranscriptCursor::Next() {
    for (;;) {
        if (std::optional<TranscriptRecord> record = Decode()) return record;
        if (!ReadMore()) return std::nullopt;
    }
}

std::optional<TranscriptRecord> TranscriptCursor::Decode() {
    if (start_ == bytes_.size()) return std::nullopt;
    TranscriptRecord record;
    record.kind = bytes_[start_];
    ByteReader in(bytes_.data() + start_ + 1, bytes_.size() - start_ - 1);
    bool whole = false;
    if (record.kind == kStatementRecord) {
        uint64_t parameters = 0;
        whole = in.Number(record.id) && in.Number(parameters) && in.Text(record.text) &&
                (parameters == 0 || in.Text(record.expanded));
        record.parameters = static_cast<int>(parameters);
    } else if (record.kind == kRowsRecord) {
        whole = in.Number(record.id) && in.Number(record.rows);
    } else if (record.kind == kSectionRecord) {
        whole = in.Text(record.text);
    } else {
        throw std::runtime_error(path_ + ": not a transcript");
    }
    if (!whole) return std::nullopt;
    start_ += 1 + in.Used();
    return record;
}

bool TranscriptCursor::ReadMore() {
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(start_));
    start_ = 0;
    char chunk[1 << 16];
    ssize_t n = ::read(fd_, chunk, sizeof chunk);
    if (n <= 0) return false;
    bytes_.insert(bytes_.end(), chunk, chunk + n);
    return true;
}

}  // namespace bench
