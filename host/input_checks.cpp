#include "host/input_checks.h"

#include <cctype>
#include <cstdio>

#include "host/bad_input.h"

namespace kdhost {

namespace {

// The width of the DATABASE_ID columns: a longer identifier does not fit
// (a server refuses the statement).
constexpr size_t kDatabaseIdWidth = 64;

const char kBreaksStatements[] = ", which would break the upgraders' SQL statements; ";

struct QuotedSetting {
    const char* key;
    const char* valueName;
};

// The settings an upgrader writes into a statement between quotes.
constexpr QuotedSetting kQuotedSettings[] = {{"BulletinBoard Version", "VersionName"}};

bool IsControl(char c) { return std::iscntrl(static_cast<unsigned char>(c)) != 0; }

// Why a text cannot stand between single quotes in a statement; empty when
// it can.
std::string QuotedTextProblem(const std::string& text) {
    for (char c : text) {
        if (c == '\'') return "holds a single quote";
        if (IsControl(c)) return "holds a control character";
    }
    return "";
}

bool StartsName(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool InName(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

// Letters, digits and underscores, each name starting with a letter or an
// underscore; a dot ends a schema name ("PROCESS."), so the name before it
// cannot be empty. The part after the last dot may be empty: the table
// name follows.
bool IsTablePrefix(const std::string& prefix) {
    bool nameStart = true;
    for (char c : prefix) {
        if (c == '.') {
            if (nameStart) return false;
            nameStart = true;
        } else if (nameStart ? StartsName(c) : InName(c)) {
            nameStart = false;
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string QuotedForMessage(const std::string& value) {
    std::string shown = "\"";
    for (char c : value) {
        if (c == '\t') {
            shown += "\\t";
        } else if (c == '\n') {
            shown += "\\n";
        } else if (c == '\r') {
            shown += "\\r";
        } else if (IsControl(c)) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(c));
            shown += escape;
        } else {
            shown += c;
        }
    }
    return shown + "\"";
}

std::string DatabaseIdProblem(const std::string& id) {
    std::string problem = QuotedTextProblem(id);
    if (!problem.empty()) {
        return QuotedForMessage(id) + " " + problem + kBreaksStatements +
               "use an identifier without quotes or control characters";
    }
    if (id.size() > kDatabaseIdWidth) {
        return QuotedForMessage(id) + " is longer than the " + std::to_string(kDatabaseIdWidth) +
               " characters the repository keeps; use a shorter identifier";
    }
    return "";
}

void CheckDatabaseIdOption(const std::string& id) {
    std::string problem = DatabaseIdProblem(id);
    if (!problem.empty()) throw BadInput("--database-id " + problem);
}

void CheckTablePrefix(const std::string& prefix) {
    if (IsTablePrefix(prefix)) return;
    throw BadInput("--prefix " + QuotedForMessage(prefix) +
                   " cannot stand in front of the table names; use letters, digits and underscores, not beginning "
                   "with a digit, and a dot after a schema name (GIS_ or PROCESS.)");
}

void CheckQuotedSettings(const Settings& settings) {
    for (const QuotedSetting& setting : kQuotedSettings) {
        std::optional<std::string> value = settings.Get(setting.key, setting.valueName);
        std::string problem = value ? QuotedTextProblem(*value) : "";
        if (problem.empty()) continue;
        throw BadInput("the setting " + std::string(setting.key) + "/" + setting.valueName + " " +
                       QuotedForMessage(*value) + " " + problem + kBreaksStatements +
                       "correct it in --setting or in the settings file " + Settings::DefaultPath());
    }
}

}  // namespace kdhost
