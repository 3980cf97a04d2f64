#pragma once
// A FILE* writing into memory, for comparing what the runner prints.
#include <cstdio>
#include <cstdlib>
#include <string>

namespace kdhost::testing {

class MemoryStream {
public:
    MemoryStream() { file_ = open_memstream(&buffer_, &size_); }
    ~MemoryStream() {
        std::fclose(file_);
        std::free(buffer_);
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    std::FILE* File() { return file_; }
    std::string Text() {
        std::fflush(file_);
        return std::string(buffer_, size_);
    }

private:
    std::FILE* file_ = nullptr;
    char* buffer_ = nullptr;
    size_t size_ = 0;
};

}  // namespace kdhost::testing
