#pragma once
// Values written with their type, as the reviewed case files write them:
// Empty, Null, Object (a new Collection), "Integer -7", "Long 40000",
// "Double 2.5", "Boolean True", "Date 45351.5", "String 'text'", Array (an
// empty one).
#include <string>

#include "platform/automation/collection.h"
#include "platform/automation/variant.h"

namespace typed_value {

inline automation::Variant Read(const std::string& text) {
    using automation::Variant;
    const size_t blank = text.find(' ');
    const std::string type = text.substr(0, blank);
    const std::string value = blank == std::string::npos ? "" : text.substr(blank + 1);
    if (type == "Empty") return Variant();
    if (type == "Null") return Variant::Null();
    if (type == "Object") return Variant(com::ComPtr<com::IUnknown>(automation::Collection::Create()->Unknown()));
    if (type == "Integer") return Variant::Integer(static_cast<int16_t>(std::stoi(value)));
    if (type == "Long") return Variant::Long(std::stoi(value));
    if (type == "Boolean") return Variant::Boolean(value == "True");
    if (type == "Date") return Variant::Date(std::stod(value));
    if (type == "String") return Variant(value.substr(1, value.size() - 2));
    if (type == "Array") return Variant(automation::VariantArray{});
    return Variant(std::stod(value));
}

}  // namespace typed_value
