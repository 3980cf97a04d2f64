#pragma once
// ODBC connection strings as the driver manager reads them: KEY=VALUE
// pairs separated by ';', blanks allowed around the key and the '=', and a
// value in braces that may hold ';' and writes a closing brace as "}}".
// The runner shows connection strings (console, log, JSON, messages) with
// every password written "***".
#include <optional>
#include <string>
#include <vector>

namespace kdhost {

struct OdbcAttribute {
    std::string key;    // without the blanks around it, as written
    std::string value;  // without braces, "}}" read as "}"
    // Where the value stands in the string as written (braces included,
    // surrounding blanks not): an empty span for an empty value.
    size_t begin = 0;
    size_t end = 0;
};

std::vector<OdbcAttribute> ParseOdbcAttributes(const std::string& connectionString);

// The value of the first attribute of that key (compared without regard
// to case); empty when the key is absent.
std::string OdbcAttributeValue(const std::string& connectionString, const std::string& key);

// The connection string with the value of every PWD or PASSWORD key
// replaced by "***"; everything else as written.
std::string MaskOdbcPasswords(const std::string& connectionString);

// A text that may repeat the connection string or its passwords (a driver's
// message): the string itself shown masked, and each password, as written
// and as the driver reads it, replaced by "***".
std::string HideOdbcPasswords(const std::string& text, const std::string& connectionString);

}  // namespace kdhost
