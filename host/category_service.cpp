#include "host/category_service.h"

#include "platform/automation/basic_error.h"
#include "platform/com/error_info.h"

namespace kdhost {

com::GUID UpgraderCategory() { return com::MakeGuid(kUpgraderCategoryText); }

com::HRESULT CategoryService::GetCategory(int32_t code, std::string* categoryId) {
    return com::Guard([&] {
        if (code != kUpgraderCategoryCode) {
            throw automation::BasicError(automation::kErrInvalidProcedureCall, "kdvq-upgrade",
                                         "Unknown component category code " + std::to_string(code));
        }
        *categoryId = kUpgraderCategoryText;
    });
}

}  // namespace kdhost
