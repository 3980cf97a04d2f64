#pragma once
// Writes one JSON document, indented by two blanks per level.
#include <cstdint>
#include <string>
#include <vector>

namespace kdhost {

class JsonWriter {
public:
    JsonWriter& BeginObject() { return Open('{'); }
    JsonWriter& EndObject() { return Close('}'); }
    JsonWriter& BeginArray() { return Open('['); }
    JsonWriter& EndArray() { return Close(']'); }
    // The name of the next member of an object.
    JsonWriter& Key(const std::string& name);
    JsonWriter& String(const std::string& value);
    JsonWriter& Integer(int64_t value);
    // A number with the given digits after the decimal point.
    JsonWriter& Decimal(double value, int digits);
    JsonWriter& Boolean(bool value);
    JsonWriter& StringArray(const std::vector<std::string>& values);

    // The document, ending with a line break.
    std::string Text() const { return text_ + "\n"; }

    static std::string Quote(const std::string& value);

private:
    JsonWriter& Open(char bracket);
    JsonWriter& Close(char bracket);
    void BeforeValue();
    void NewLine();

    struct Level {
        bool empty = true;
    };
    std::string text_;
    std::vector<Level> levels_;
    bool afterKey_ = false;
};

}  // namespace kdhost
