#include "host/target.h"

#include "host/bad_input.h"
#include "host/odbc_connection_string.h"

namespace kdhost {

namespace {

const std::string kOdbcScheme = "odbc:";
const std::string kSqliteScheme = "sqlite:";

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

}  // namespace

Target ParseTarget(const std::string& text) {
    Target target;
    target.text = text;
    if (StartsWith(text, kOdbcScheme)) {
        target.kind = Target::Kind::Odbc;
        target.odbc = text.substr(kOdbcScheme.size());
        if (target.odbc.empty()) throw BadInput("odbc: needs an ODBC connection string after it");
        target.text = kOdbcScheme + MaskOdbcPasswords(target.odbc);
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

std::string Target::Shown(const std::string& text) const {
    return kind == Kind::Odbc ? HideOdbcPasswords(text, odbc) : text;
}

}  // namespace kdhost
