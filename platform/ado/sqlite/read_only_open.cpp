#include "platform/ado/sqlite/read_only_open.h"

#include <sqlite3.h>
#include <unistd.h>

#include <fstream>

namespace ado::sqlite {

namespace {

// Bytes 18 and 19 of the header are the file format versions: 2 for a
// file in write-ahead-log mode.
bool InWriteAheadLogMode(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char header[20] = {};
    in.read(header, sizeof header);
    return in.gcount() == sizeof header && header[18] == 2 && header[19] == 2;
}

bool Exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

// The path as the path of a file: URI (characters with a meaning there
// escaped).
std::string FileUri(const std::string& path) {
    std::string uri = "file:";
    for (char c : path) {
        if (c == '%' || c == '?' || c == '#') {
            static const char kHex[] = "0123456789ABCDEF";
            uri += '%';
            uri += kHex[(static_cast<unsigned char>(c) >> 4) & 0xF];
            uri += kHex[static_cast<unsigned char>(c) & 0xF];
        } else {
            uri += c;
        }
    }
    return uri;
}

}  // namespace

ReadOnlyOpen ReadOnlyOpenOf(const std::string& path) {
    if (!InWriteAheadLogMode(path) || Exists(path + "-wal") || Exists(path + "-shm")) {
        return {path, SQLITE_OPEN_READONLY};
    }
    return {FileUri(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI};
}

}  // namespace ado::sqlite
