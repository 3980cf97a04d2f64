#include "host/settings.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "host/text_lines.h"

namespace kdhost {

namespace {

std::string Trim(const std::string& text) {
    size_t begin = 0;
    while (begin < text.size() && std::isspace(static_cast<unsigned char>(text[begin]))) ++begin;
    return TrimRight(text.substr(begin));
}

}  // namespace

std::string Settings::DefaultPath() {
    if (const char* path = std::getenv("KDVQ_SETTINGS"); path && *path) return path;
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config) {
        return std::string(config) + "/kdvq/settings.ini";
    }
    const char* home = std::getenv("HOME");
    return std::string(home ? home : ".") + "/.config/kdvq/settings.ini";
}

void Settings::LoadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return;
    std::ostringstream text;
    text << in.rdbuf();
    LoadText(text.str(), path);
}

void Settings::LoadText(const std::string& text, const std::string& path) {
    std::string key;
    std::vector<std::string> lines = SplitLines(text);
    for (size_t n = 0; n < lines.size(); ++n) {
        std::string line = Trim(lines[n]);
        if (line.empty() || line[0] == '#' || line[0] == ';') continue;
        if (line.front() == '[' && line.back() == ']') {
            key = Trim(line.substr(1, line.size() - 2));
            continue;
        }
        size_t equals = line.find('=');
        if (equals == std::string::npos || key.empty()) {
            throw std::runtime_error(path + ":" + std::to_string(n + 1) +
                                     (key.empty() ? ": a value before the first [key]" : ": expected NAME=VALUE"));
        }
        Set(key, Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)));
    }
}

void Settings::ApplyOption(const std::string& assignment) {
    size_t equals = assignment.find('=');
    size_t slash = equals == std::string::npos ? std::string::npos : assignment.rfind('/', equals);
    if (slash == std::string::npos || slash == 0 || slash + 1 == equals) {
        throw std::invalid_argument("a setting is KEY/VALUENAME=VALUE, not \"" + assignment + "\"");
    }
    Set(assignment.substr(0, slash), assignment.substr(slash + 1, equals - slash - 1), assignment.substr(equals + 1));
}

void Settings::Set(const std::string& key, const std::string& valueName, const std::string& value) {
    values_[Fold(key)][Fold(valueName)] = value;
}

std::optional<std::string> Settings::Get(const std::string& key, const std::string& valueName) const {
    auto section = values_.find(Fold(key));
    if (section == values_.end()) return std::nullopt;
    auto value = section->second.find(Fold(valueName));
    if (value == section->second.end()) return std::nullopt;
    return value->second;
}

std::string Settings::Fold(const std::string& name) {
    std::string folded = name;
    for (char& c : folded) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return folded;
}

}  // namespace kdhost
