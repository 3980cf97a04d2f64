#include "host/sample_repository.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "host/bad_input.h"
#include "host/resource_files.h"

namespace kdhost {

namespace {

std::string ReadScript(const std::string& release) {
    std::string path;
    try {
        path = FindResourceFile("sample-" + release + ".sql");
    } catch (const std::exception& e) {
        throw BadInput(e.what());
    }
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs the script in one transaction; the error text when it fails.
std::string RunScript(const std::string& path, const std::string& script) {
    sqlite3* db = nullptr;
    std::string error;
    if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        error = db ? sqlite3_errmsg(db) : "out of memory";
    } else if (sqlite3_exec(db, ("BEGIN;\n" + script + "\nCOMMIT;").c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        error = sqlite3_errmsg(db);
    }
    sqlite3_close(db);
    return error;
}

}  // namespace

std::vector<std::string> SampleReleases() { return {"8.2"}; }

void CreateSampleRepository(const std::string& release, const std::string& path) {
    std::string script = ReadScript(release);
    // Claiming the name atomically guarantees an existing file is never
    // written over, even one that appears while we work.
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) {
        if (errno == EEXIST) throw BadInput(path + ": already exists; a sample is never written over a file");
        throw BadInput(path + ": cannot be created: " + std::strerror(errno));
    }
    ::close(fd);
    std::string error = RunScript(path, script);
    if (!error.empty()) {
        ::unlink(path.c_str());
        throw BadInput(path + ": the sample could not be written: " + error);
    }
}

}  // namespace kdhost
