#include "host/odbc_connection_string.h"

#include <algorithm>

#include "platform/automation/text_case.h"

namespace kdhost {

namespace {

const char kBlanks[] = " \t";
const char kShownPassword[] = "***";

bool IsPasswordKey(const std::string& key) {
    return automation::SameTextIgnoringCase(key, "pwd") || automation::SameTextIgnoringCase(key, "password");
}

std::string Trim(const std::string& text) {
    size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The closing brace of a braced value opened at `open`: the first '}' that
// is not doubled; the end of the string when there is none.
size_t ClosingBrace(const std::string& text, size_t open) {
    size_t at = open + 1;
    while (at < text.size()) {
        if (text[at] != '}') {
            ++at;
        } else if (at + 1 < text.size() && text[at + 1] == '}') {
            at += 2;
        } else {
            return at;
        }
    }
    return text.size();
}

std::string Unescaped(const std::string& braced) {
    std::string value;
    for (size_t at = 0; at < braced.size(); ++at) {
        value += braced[at];
        if (braced[at] == '}' && at + 1 < braced.size() && braced[at + 1] == '}') ++at;
    }
    return value;
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    if (from.empty()) return;
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

std::vector<OdbcAttribute> ParseOdbcAttributes(const std::string& text) {
    std::vector<OdbcAttribute> attributes;
    size_t at = 0;
    while (at < text.size()) {
        size_t equals = text.find('=', at);
        size_t semicolon = text.find(';', at);
        if (equals == std::string::npos || (semicolon != std::string::npos && semicolon < equals)) {
            // A part without '=' says nothing; the driver manager skips it.
            if (semicolon == std::string::npos) break;
            at = semicolon + 1;
            continue;
        }
        OdbcAttribute attribute;
        attribute.key = Trim(text.substr(at, equals - at));
        attribute.begin = std::min(text.find_first_not_of(kBlanks, equals + 1), text.size());
        size_t pairEnd;
        if (attribute.begin < text.size() && text[attribute.begin] == '{') {
            size_t close = ClosingBrace(text, attribute.begin);
            attribute.value = Unescaped(text.substr(attribute.begin + 1, close - attribute.begin - 1));
            attribute.end = std::min(close + 1, text.size());
            pairEnd = std::min(text.find(';', attribute.end), text.size());
        } else {
            pairEnd = std::min(text.find(';', attribute.begin), text.size());
            attribute.value = Trim(text.substr(attribute.begin, pairEnd - attribute.begin));
            attribute.end = attribute.begin + attribute.value.size();
        }
        attributes.push_back(attribute);
        at = pairEnd + 1;
    }
    return attributes;
}

std::string OdbcAttributeValue(const std::string& connectionString, const std::string& key) {
    for (const OdbcAttribute& attribute : ParseOdbcAttributes(connectionString)) {
        if (automation::SameTextIgnoringCase(attribute.key, key)) return attribute.value;
    }
    return "";
}

std::string MaskOdbcPasswords(const std::string& connectionString) {
    std::string shown;
    size_t copied = 0;
    for (const OdbcAttribute& attribute : ParseOdbcAttributes(connectionString)) {
        if (!IsPasswordKey(attribute.key) || attribute.begin == attribute.end) continue;
        shown += connectionString.substr(copied, attribute.begin - copied) + kShownPassword;
        copied = attribute.end;
    }
    return shown + connectionString.substr(copied);
}

std::string HideOdbcPasswords(const std::string& text, const std::string& connectionString) {
    std::vector<std::string> secrets;
    for (const OdbcAttribute& attribute : ParseOdbcAttributes(connectionString)) {
        if (!IsPasswordKey(attribute.key) || attribute.begin == attribute.end) continue;
        secrets.push_back(connectionString.substr(attribute.begin, attribute.end - attribute.begin));
        secrets.push_back(attribute.value);
    }
    // The longest first, so that a password that holds another is hidden whole.
    std::sort(secrets.begin(), secrets.end(),
              [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
    std::string hidden = text;
    ReplaceAll(hidden, connectionString, MaskOdbcPasswords(connectionString));
    for (const std::string& secret : secrets) ReplaceAll(hidden, secret, kShownPassword);
    return hidden;
}

}  // namespace kdhost
