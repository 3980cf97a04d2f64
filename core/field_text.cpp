#include "core/field_text.h"

#include "platform/automation/basic_error.h"

namespace kdvq {

std::string TextOf(const automation::Variant& value) {
    if (value.IsNull() || value.IsEmpty()) return "";
    return value.CStr();
}

std::optional<std::string> IdKey(const automation::Variant& value) {
    if (value.IsNull() || value.IsEmpty()) return std::nullopt;
    return std::to_string(value.CLng());
}

bool DiffersFrom(const automation::Variant& value, int32_t number) {
    if (value.IsNull()) return false;
    return !value.EqualsBasic(automation::Variant(number));
}

ado::Recordset& Opened(const RecordsetPtr& rs) {
    if (!rs) automation::RaiseBasic(automation::kErrObjectVariableNotSet);
    return *rs;
}

bool AtEof(ado::Recordset& rs) { return rs.EOF(); }

bool IsEmpty(ado::Recordset& rs) { return rs.BOF() && AtEof(rs); }

}  // namespace kdvq
