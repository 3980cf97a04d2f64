#include "host/resource_strings.h"

#include "platform/automation/basic_error.h"
#include "platform/com/error_info.h"

namespace kdhost {

std::string SubstitutionText(const kdvq::Variant& value) {
    if (value.IsNull() || value.IsObject() || value.IsArray()) return "";
    return value.CStr();
}

com::HRESULT ResourceStrings::Initialize(const std::string& libraryName) {
    libraryName_ = libraryName;
    return com::S_OK;
}

com::HRESULT ResourceStrings::GetString(int32_t id, const kdvq::VariantArray& values, std::string* text) {
    return com::Guard([&] {
        std::optional<std::string> found = table_->Find(id);
        if (!found) {
            throw automation::BasicError(automation::kErrInvalidProcedureCall, "kdvq-upgrade",
                                         "String " + std::to_string(id) + " of " +
                                             (libraryName_.empty() ? "the library" : libraryName_) +
                                             " is missing from " + table_->Path());
        }
        std::vector<std::string> texts;
        for (const kdvq::Variant& value : values.items) texts.push_back(SubstitutionText(value));
        *text = StringTable::Substitute(*found, texts);
    });
}

}  // namespace kdhost
