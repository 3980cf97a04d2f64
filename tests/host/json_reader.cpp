#include "tests/host/json_reader.h"

#include <cctype>
#include <cstdlib>

namespace kdhost::testing {

namespace {

class Reader {
public:
    explicit Reader(const std::string& text) : text_(text) {}

    JsonValue Document() {
        JsonValue value = Value();
        Blanks();
        if (at_ != text_.size()) Fail("text after the document");
        return value;
    }

private:
    [[noreturn]] void Fail(const std::string& what) {
        throw std::runtime_error("JSON: " + what + " at offset " + std::to_string(at_));
    }
    void Blanks() {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
    }
    bool Take(char c) {
        Blanks();
        if (at_ < text_.size() && text_[at_] == c) {
            ++at_;
            return true;
        }
        return false;
    }
    void Expect(char c) {
        if (!Take(c)) Fail(std::string("expected '") + c + "'");
    }
    bool Word(const std::string& word) {
        if (text_.compare(at_, word.size(), word) != 0) return false;
        at_ += word.size();
        return true;
    }

    JsonValue Value() {
        Blanks();
        if (at_ >= text_.size()) Fail("unexpected end");
        JsonValue value;
        char c = text_[at_];
        if (c == '{') {
            value.type = JsonValue::Type::Object;
            ++at_;
            if (!Take('}')) {
                do {
                    Blanks();
                    std::string key = String();
                    Expect(':');
                    value.members.emplace_back(key, Value());
                } while (Take(','));
                Expect('}');
            }
        } else if (c == '[') {
            value.type = JsonValue::Type::Array;
            ++at_;
            if (!Take(']')) {
                do value.items.push_back(Value());
                while (Take(','));
                Expect(']');
            }
        } else if (c == '"') {
            value.type = JsonValue::Type::String;
            value.text = String();
        } else if (Word("true")) {
            value.type = JsonValue::Type::Boolean;
            value.boolean = true;
        } else if (Word("false")) {
            value.type = JsonValue::Type::Boolean;
        } else if (Word("null")) {
            value.type = JsonValue::Type::Null;
        } else {
            char* end = nullptr;
            value.number = std::strtod(text_.c_str() + at_, &end);
            if (end == text_.c_str() + at_) Fail("not a value");
            value.type = JsonValue::Type::Number;
            at_ = end - text_.c_str();
        }
        return value;
    }

    std::string String() {
        if (at_ >= text_.size() || text_[at_] != '"') Fail("expected a string");
        std::string out;
        for (++at_; at_ < text_.size() && text_[at_] != '"'; ++at_) {
            char c = text_[at_];
            if (static_cast<unsigned char>(c) < 0x20) Fail("control character in a string");
            if (c != '\\') {
                out += c;
                continue;
            }
            if (++at_ >= text_.size()) Fail("unexpected end");
            switch (text_[at_]) {
                case 'n': out += '\n'; break;
                case 'r': out += '\r'; break;
                case 't': out += '\t'; break;
                case 'u':
                    out += static_cast<char>(std::strtol(text_.substr(at_ + 1, 4).c_str(), nullptr, 16));
                    at_ += 4;
                    break;
                default: out += text_[at_];
            }
        }
        Expect('"');
        return out;
    }

    const std::string& text_;
    size_t at_ = 0;
};

}  // namespace

const JsonValue& JsonValue::operator[](const std::string& key) const {
    for (const auto& member : members) {
        if (member.first == key) return member.second;
    }
    throw std::out_of_range("no member " + key);
}

std::vector<std::string> JsonValue::Keys() const {
    std::vector<std::string> keys;
    for (const auto& member : members) keys.push_back(member.first);
    return keys;
}

JsonValue ParseJson(const std::string& text) { return Reader(text).Document(); }

}  // namespace kdhost::testing
