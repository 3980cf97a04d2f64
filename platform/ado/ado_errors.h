#pragma once
// Raising ADO's own errors (misuse of the objects) with the numbers,
// sources and descriptions a Basic caller of the data-access objects sees.
#include <cstdint>
#include <string>

namespace ado {

// Err.Source of ADO's own errors.
constexpr const char* kConnectionSource = "ADODB.Connection";
constexpr const char* kRecordsetSource = "ADODB.Recordset";
constexpr const char* kFieldSource = "ADODB.Field";

// ADO's standard description for one of its error numbers.
std::string AdoDescription(int32_t number);

// Raises number with ADO's standard description, or with description when
// it is given.
[[noreturn]] void RaiseAdo(int32_t number, const char* source, const std::string& description = "");

}  // namespace ado
