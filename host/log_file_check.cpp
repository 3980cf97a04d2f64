#include "host/log_file_check.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "host/bad_input.h"

namespace kdhost {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
    throw BadInput(path + ": the log cannot be written: " + why + "; give another log file with --log FILE");
}

void CheckFolder(const std::string& path) {
    std::string folder = std::filesystem::path(path).parent_path().string();
    if (folder.empty()) folder = ".";
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0) {
        Refuse(path, errno == ENOENT ? "its folder " + folder + " does not exist"
                                     : "its folder " + folder + " cannot be reached (" + std::strerror(errno) + ")");
    }
    if (!S_ISDIR(info.st_mode)) Refuse(path, folder + " is not a folder");
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
        Refuse(path, "its folder " + folder + " cannot be written (" + std::strerror(errno) + ")");
    }
}

}  // namespace

void CheckLogFile(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        if (errno != ENOENT) Refuse(path, std::strerror(errno));
        CheckFolder(path);
        return;
    }
    if (S_ISDIR(info.st_mode)) Refuse(path, "it is a folder");
    // Opening for appending changes nothing in the file.
    int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) Refuse(path, std::strerror(errno));
    ::close(fd);
}

}  // namespace kdhost
