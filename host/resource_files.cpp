#include "host/resource_files.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace kdhost {

std::string ExecutableFolder() {
    std::error_code error;
    std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : exe.parent_path().string();
}

std::vector<std::string> ResourceFolders() {
    std::vector<std::string> folders;
    if (const char* dir = std::getenv("KDVQ_RESOURCE_DIR"); dir && *dir) folders.push_back(dir);
    std::string exeFolder = ExecutableFolder();
    if (!exeFolder.empty()) {
        folders.push_back(exeFolder + "/resources");
        folders.push_back(exeFolder + "/../share/kdvq");
    }
#ifdef KDVQ_BUILD_RESOURCE_DIR
    folders.push_back(KDVQ_BUILD_RESOURCE_DIR);
#endif
    return folders;
}

std::string FindResourceFile(const std::string& fileName) {
    std::string searched;
    for (const std::string& folder : ResourceFolders()) {
        std::string path = folder + "/" + fileName;
        if (::access(path.c_str(), R_OK) == 0) return path;
        searched += (searched.empty() ? "" : ", ") + folder;
    }
    throw std::runtime_error("cannot find " + fileName + " (searched " + searched +
                             "; set KDVQ_RESOURCE_DIR to the folder that holds it)");
}

}  // namespace kdhost
