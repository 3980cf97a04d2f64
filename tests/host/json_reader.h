#pragma once
// A small JSON reader for checking the shape of the runner's documents.
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace kdhost::testing {

struct JsonValue {
    enum class Type { Null, Boolean, Number, String, Array, Object } type = Type::Null;
    bool boolean = false;
    double number = 0;
    std::string text;
    std::vector<JsonValue> items;                              // Array
    std::vector<std::pair<std::string, JsonValue>> members;    // Object, in document order

    // The member of an object; raises std::out_of_range when missing.
    const JsonValue& operator[](const std::string& key) const;
    std::vector<std::string> Keys() const;
};

// Raises std::runtime_error for text that is not one JSON document.
JsonValue ParseJson(const std::string& text);

}  // namespace kdhost::testing
