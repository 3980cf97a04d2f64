#pragma once
// The host's string table: texts by number, with numbered substitution
// markers %1, %2, ... that take the values the caller passes, in order.
//
// File format, one string per line: the number, a tab, the text. Lines
// starting with '#' and empty lines are ignored. In a text, "%%" stands
// for a percent sign and "\t" for a tab.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kdhost {

class StringTable {
public:
    // Raises std::runtime_error naming the file and line when the file
    // cannot be read or a line is malformed.
    static StringTable Load(const std::string& path);
    // The same from text already read (path only names the source).
    static StringTable Parse(const std::string& text, const std::string& path);

    std::optional<std::string> Find(int32_t id) const;
    const std::map<int32_t, std::string>& Entries() const { return entries_; }
    const std::string& Path() const { return path_; }

    // Replaces %n with values[n - 1]; a marker without a value becomes empty.
    static std::string Substitute(const std::string& text, const std::vector<std::string>& values);

private:
    std::map<int32_t, std::string> entries_;
    std::string path_;
};

}  // namespace kdhost
