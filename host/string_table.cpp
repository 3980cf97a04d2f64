#include "host/string_table.h"

#include <cctype>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "host/text_lines.h"

namespace kdhost {

namespace {

std::string Unescape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 't') {
            out += '\t';
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

}  // namespace

StringTable StringTable::Load(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read the string table " + path);
    std::ostringstream text;
    text << in.rdbuf();
    return Parse(text.str(), path);
}

StringTable StringTable::Parse(const std::string& text, const std::string& path) {
    StringTable table;
    table.path_ = path;
    std::vector<std::string> lines = SplitLines(text);
    for (size_t n = 0; n < lines.size(); ++n) {
        const std::string& line = lines[n];
        if (line.empty() || line[0] == '#') continue;
        size_t tab = line.find('\t');
        bool numeric = tab != std::string::npos && tab > 0 && tab <= 9;
        for (size_t i = 0; numeric && i < tab; ++i) numeric = std::isdigit(static_cast<unsigned char>(line[i])) != 0;
        if (!numeric) {
            throw std::runtime_error(path + ":" + std::to_string(n + 1) + ": expected a number, a tab and the text");
        }
        int32_t id = std::stoi(line.substr(0, tab));
        if (!table.entries_.emplace(id, Unescape(line.substr(tab + 1))).second) {
            throw std::runtime_error(path + ":" + std::to_string(n + 1) + ": string " + std::to_string(id) +
                                     " is given twice");
        }
    }
    return table;
}

std::optional<std::string> StringTable::Find(int32_t id) const {
    auto found = entries_.find(id);
    if (found == entries_.end()) return std::nullopt;
    return found->second;
}

std::string StringTable::Substitute(const std::string& text, const std::vector<std::string>& values) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%' || i + 1 >= text.size()) {
            out += text[i];
            continue;
        }
        if (text[i + 1] == '%') {
            out += '%';
            ++i;
            continue;
        }
        size_t end = i + 1;
        while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end]))) ++end;
        if (end == i + 1) {
            out += '%';
            continue;
        }
        size_t index = 0;
        for (size_t d = i + 1; d < end && index <= values.size(); ++d) index = index * 10 + (text[d] - '0');
        if (index >= 1 && index <= values.size()) out += values[index - 1];
        i = end - 1;
    }
    return out;
}

}  // namespace kdhost
