// The registry file: a small INI-style text, one section per class and per
// interface description, in registration order:
//
//   [Class {CLSID}]
//   ProgID=kdVqUpgraders.KDVqUpgrader830
//   Name=KDVqUpgrader830
//   Library=/opt/kdvq/lib/libkdVqUpgraders.so
//   Category={CATID}          (one line per implemented category)
//
//   [Interface {IID}]
//   Name=IKDVqDatabaseUpgrader
//   Library=/opt/kdvq/lib/libkdVqUpgraders.so
//
// Values are written after "=" as they are, with backslash, CR and LF
// escaped as \\, \r and \n. Lines starting with ';' or '#' are comments.
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>

#include "platform/automation/basic_error.h"
#include "platform/com/runtime.h"

namespace com {

namespace {

const char* const kSource = "kdplatform";

[[noreturn]] void RaiseFileError(int32_t number, const std::string& detail) {
    throw automation::BasicError(number, kSource, automation::StandardDescription(number) + ": " + detail);
}

std::string Escape(const std::string& value) {
    std::string out;
    for (char c : value) {
        switch (c) {
            case '\\': out += "\\\\"; break;
            case '\r': out += "\\r"; break;
            case '\n': out += "\\n"; break;
            default: out += c;
        }
    }
    return out;
}

bool Unescape(const std::string& text, std::string* out) {
    out->clear();
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            *out += text[i];
            continue;
        }
        if (++i == text.size()) return false;
        switch (text[i]) {
            case '\\': *out += '\\'; break;
            case 'r': *out += '\r'; break;
            case 'n': *out += '\n'; break;
            default: return false;
        }
    }
    return true;
}

std::string Trim(const std::string& s) {
    const size_t b = s.find_first_not_of(" \t");
    if (b == std::string::npos) return "";
    return s.substr(b, s.find_last_not_of(" \t") - b + 1);
}

// Reads the file line by line into a Registry; every malformed line raises
// with the file name and the line number.
class RegistryReader {
public:
    RegistryReader(const std::string& path, Registry* registry) : path_(path), registry_(registry) {}

    void Read(std::istream& in) {
        std::string line;
        while (std::getline(in, line)) {
            ++lineNumber_;
            if (!line.empty() && line.back() == '\r') line.pop_back();
            const std::string text = Trim(line);
            if (text.empty() || text[0] == ';' || text[0] == '#') continue;
            if (text.front() == '[') {
                StartSection(text);
            } else {
                ReadValue(line);
            }
        }
        FinishSection();
    }

private:
    enum class Section { None, Class, Interface };

    [[noreturn]] void Corrupt(const std::string& reason) const {
        RaiseFileError(automation::kErrInvalidFileFormat,
                       "registry " + path_ + ", line " + std::to_string(lineNumber_) + ": " + reason);
    }

    GUID ParseId(const std::string& text) const {
        auto id = ParseGuid(text);
        if (!id) Corrupt("malformed identifier '" + text + "'");
        return *id;
    }

    void StartSection(const std::string& text) {
        FinishSection();
        if (text.back() != ']') Corrupt("unterminated section header");
        const std::string inner = text.substr(1, text.size() - 2);
        const size_t blank = inner.find(' ');
        const std::string kind = inner.substr(0, blank);
        const std::string id = blank == std::string::npos ? "" : Trim(inner.substr(blank + 1));
        if (kind == "Class") {
            section_ = Section::Class;
            pendingClass_ = ClassRegistration{};
            pendingClass_.clsid = ParseId(id);
            if (!seenClasses_.insert(pendingClass_.clsid).second) Corrupt("class " + id + " appears twice");
        } else if (kind == "Interface") {
            section_ = Section::Interface;
            pendingInterface_ = Registry::InterfaceRegistration{};
            pendingInterface_.iid = ParseId(id);
            if (!seenInterfaces_.insert(pendingInterface_.iid).second) Corrupt("interface " + id + " appears twice");
        } else {
            Corrupt("unknown section '" + inner + "'");
        }
    }

    void ReadValue(const std::string& line) {
        const size_t eq = line.find('=');
        if (eq == std::string::npos) Corrupt("expected Key=Value");
        const std::string key = Trim(line.substr(0, eq));
        std::string value;
        if (!Unescape(line.substr(eq + 1), &value)) Corrupt("bad escape in value of " + key);
        if (section_ == Section::Class) {
            if (key == "ProgID") {
                pendingClass_.progId = value;
            } else if (key == "Name") {
                pendingClass_.name = value;
            } else if (key == "Library") {
                pendingClass_.libraryPath = value;
            } else if (key == "Category") {
                pendingClass_.implementedCategories.push_back(ParseId(value));
            } else {
                Corrupt("unknown key '" + key + "' in a class");
            }
        } else if (section_ == Section::Interface) {
            if (key == "Name") {
                pendingInterface_.name = value;
            } else if (key == "Library") {
                pendingInterface_.libraryPath = value;
            } else {
                Corrupt("unknown key '" + key + "' in an interface");
            }
        } else {
            Corrupt("value outside any section");
        }
    }

    void FinishSection() {
        if (section_ == Section::Class) registry_->RegisterClass(pendingClass_);
        if (section_ == Section::Interface) {
            registry_->RegisterInterface(pendingInterface_.iid, pendingInterface_.name, pendingInterface_.libraryPath);
        }
        section_ = Section::None;
    }

    std::string path_;
    Registry* registry_;
    int lineNumber_ = 0;
    Section section_ = Section::None;
    ClassRegistration pendingClass_;
    Registry::InterfaceRegistration pendingInterface_;
    std::set<GUID> seenClasses_, seenInterfaces_;
};

std::string Render(const Registry& registry) {
    std::string out = "; Component registry: classes and interface descriptions in registration order.\n";
    for (const auto& c : registry.Classes()) {
        out += "\n[Class " + FormatGuid(c.clsid) + "]\n";
        out += "ProgID=" + Escape(c.progId) + "\n";
        out += "Name=" + Escape(c.name) + "\n";
        out += "Library=" + Escape(c.libraryPath) + "\n";
        for (const auto& category : c.implementedCategories) out += "Category=" + FormatGuid(category) + "\n";
    }
    for (const auto& i : registry.Interfaces()) {
        out += "\n[Interface " + FormatGuid(i.iid) + "]\n";
        out += "Name=" + Escape(i.name) + "\n";
        out += "Library=" + Escape(i.libraryPath) + "\n";
    }
    return out;
}

// mkdir -p for the directory part of path.
void CreateParentDirectories(const std::string& path) {
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
        const std::string dir = path.substr(0, slash);
        if (mkdir(dir.c_str(), 0777) == 0) continue;
        int error = errno;
        struct stat st {};
        if (error == EEXIST) {
            if (stat(dir.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) continue;
            error = ENOTDIR;
        }
        RaiseFileError(automation::kErrPathFileAccess, "cannot create directory " + dir + ": " + std::strerror(error));
    }
}

}  // namespace

Registry Registry::Load() {
    const std::string path = RegistryPath();
    Registry registry;
    struct stat st {};
    if (stat(path.c_str(), &st) != 0 && errno == ENOENT) return registry;
    std::ifstream in(path, std::ios::binary);
    if (!in || S_ISDIR(st.st_mode)) RaiseFileError(automation::kErrPathFileAccess, "cannot read registry " + path);
    RegistryReader(path, &registry).Read(in);
    return registry;
}

void Registry::Save() const {
    const std::string path = RegistryPath();
    CreateParentDirectories(path);
    static std::atomic<unsigned> serial{0};
    const std::string temp = path + ".tmp." + std::to_string(getpid()) + "." + std::to_string(++serial);
    const std::string text = Render(*this);
    FILE* file = std::fopen(temp.c_str(), "wb");
    if (!file) RaiseFileError(automation::kErrPathFileAccess, "cannot write " + temp + ": " + std::strerror(errno));
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0 &&
                         fsync(fileno(file)) == 0;
    const int writeErrno = errno;
    if (std::fclose(file) != 0 || !written) {
        std::remove(temp.c_str());
        RaiseFileError(automation::kErrPathFileAccess, "cannot write " + temp + ": " + std::strerror(writeErrno));
    }
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        const int renameErrno = errno;
        std::remove(temp.c_str());
        RaiseFileError(automation::kErrPathFileAccess, "cannot replace " + path + ": " + std::strerror(renameErrno));
    }
}

}  // namespace com
