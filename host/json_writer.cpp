#include "host/json_writer.h"

#include <cmath>
#include <cstdio>

namespace kdhost {

std::string JsonWriter::Quote(const std::string& value) {
    std::string out = "\"";
    for (unsigned char c : value) {
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
                    out += escaped;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

void JsonWriter::NewLine() {
    text_ += "\n";
    text_.append(levels_.size() * 2, ' ');
}

void JsonWriter::BeforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (levels_.empty()) return;
    if (!levels_.back().empty) text_ += ",";
    levels_.back().empty = false;
    NewLine();
}

JsonWriter& JsonWriter::Key(const std::string& name) {
    BeforeValue();
    text_ += Quote(name) + ": ";
    afterKey_ = true;
    return *this;
}

JsonWriter& JsonWriter::Open(char bracket) {
    BeforeValue();
    text_ += bracket;
    levels_.push_back(Level{});
    return *this;
}

JsonWriter& JsonWriter::Close(char bracket) {
    bool empty = levels_.back().empty;
    levels_.pop_back();
    if (!empty) NewLine();
    text_ += bracket;
    return *this;
}

JsonWriter& JsonWriter::String(const std::string& value) {
    BeforeValue();
    text_ += Quote(value);
    return *this;
}

JsonWriter& JsonWriter::Integer(int64_t value) {
    BeforeValue();
    text_ += std::to_string(value);
    return *this;
}

JsonWriter& JsonWriter::Decimal(double value, int digits) {
    BeforeValue();
    if (!std::isfinite(value)) value = 0;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    text_ += text;
    return *this;
}

JsonWriter& JsonWriter::Boolean(bool value) {
    BeforeValue();
    text_ += value ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::StringArray(const std::vector<std::string>& values) {
    BeginArray();
    for (const std::string& value : values) String(value);
    return EndArray();
}

}  // namespace kdhost
