#pragma once
// The runner's --json documents as the tests read them: parsed with the
// same library the runner writes them with, members in document order.
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace kdhost::testing {

using Json = nlohmann::ordered_json;

// Raises nlohmann::json::parse_error for text that is not one document.
inline Json ParseJson(const std::string& text) { return Json::parse(text); }

// The member names of an object, in document order.
inline std::vector<std::string> Keys(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& member : object.items()) keys.push_back(member.key());
    return keys;
}

}  // namespace kdhost::testing
