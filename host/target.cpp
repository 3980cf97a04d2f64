#include "host/target.h"

#include <algorithm>
#include <cctype>

#include "host/bad_input.h"

namespace kdhost {

namespace {

const std::string kOdbcScheme = "odbc:";
const std::string kSqliteScheme = "sqlite:";

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

bool IsPasswordKey(std::string key) {
    size_t first = key.find_first_not_of(' ');
    size_t last = key.find_last_not_of(' ');
    key = first == std::string::npos ? "" : key.substr(first, last - first + 1);
    for (char& c : key) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key == "pwd" || key == "password";
}

// The target's text goes to the console, the log and the JSON documents:
// the value of a PWD or PASSWORD key is written "***" there. A value in
// braces may hold semicolons; it ends at its closing brace.
std::string WithoutPassword(const std::string& connectionString) {
    std::string shown;
    size_t at = 0;
    while (at < connectionString.size()) {
        size_t equals = connectionString.find('=', at);
        size_t semicolon = connectionString.find(';', at);
        if (equals == std::string::npos || (semicolon != std::string::npos && semicolon < equals)) {
            size_t end = semicolon == std::string::npos ? connectionString.size() : semicolon + 1;
            shown += connectionString.substr(at, end - at);
            at = end;
            continue;
        }
        size_t valueEnd = equals + 1;
        if (valueEnd < connectionString.size() && connectionString[valueEnd] == '{') {
            size_t brace = connectionString.find('}', valueEnd);
            valueEnd = brace == std::string::npos ? connectionString.size() : brace + 1;
        }
        valueEnd = std::min(connectionString.find(';', valueEnd), connectionString.size());
        std::string key = connectionString.substr(at, equals - at);
        bool hidden = IsPasswordKey(key) && valueEnd > equals + 1;
        shown += key + "=" + (hidden ? "***" : connectionString.substr(equals + 1, valueEnd - equals - 1));
        at = valueEnd;
    }
    return shown;
}

}  // namespace

Target ParseTarget(const std::string& text) {
    Target target;
    target.text = text;
    if (StartsWith(text, kOdbcScheme)) {
        target.kind = Target::Kind::Odbc;
        target.odbc = text.substr(kOdbcScheme.size());
        if (target.odbc.empty()) throw BadInput("odbc: needs an ODBC connection string after it");
        target.text = kOdbcScheme + WithoutPassword(target.odbc);
        return target;
    }
    target.path = StartsWith(text, kSqliteScheme) ? text.substr(kSqliteScheme.size()) : text;
    if (target.path.empty()) throw BadInput("--db needs a repository file or odbc:CONNECTION-STRING");
    return target;
}

std::string Target::ConnectionString(bool readOnly) const {
    if (kind == Kind::Odbc) return kOdbcScheme + odbc;
    return kSqliteScheme + path + (readOnly ? "?mode=ro" : "");
}

}  // namespace kdhost
