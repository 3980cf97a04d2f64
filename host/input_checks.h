#pragma once
// The rules for the text the upgraders put into their SQL statements as it
// is: the repository identifier and a host setting go between single
// quotes, the table prefix stands in front of every table name. A value
// that breaks the rule would break the statements (or change what they do),
// so it is refused before anything runs.
#include <string>

#include "host/settings.h"

namespace kdhost {

// What is wrong with a repository identifier, in a sentence that names it
// and says what to do; empty when nothing is.
std::string DatabaseIdProblem(const std::string& id);

// Raises BadInput naming the option and the value.
void CheckDatabaseIdOption(const std::string& id);
void CheckTablePrefix(const std::string& prefix);
// The settings the upgraders write between quotes.
void CheckQuotedSettings(const Settings& settings);

// The value between double quotes, with control characters written as
// escapes (\t, \n, \x01), so that a message stays on one line.
std::string QuotedForMessage(const std::string& value);

}  // namespace kdhost
