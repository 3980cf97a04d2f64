#pragma once
// Reading recordset values the way the data migrations need them.
#include <optional>
#include <string>

#include "framework/mod_main.h"
#include "platform/automation/variant.h"

namespace kdvq {

// A value joined into a text as Basic's "&" does: Null and Empty give "".
std::string TextOf(const automation::Variant& value);

// The dictionary key of an identifier: the decimal text of its 32-bit
// value. Null (an identifier not filled in) has no key, so a lookup with it
// finds nothing.
std::optional<std::string> IdKey(const automation::Variant& value);

// Basic's "value <> number": a Null value never passes the test.
bool DiffersFrom(const automation::Variant& value, int32_t number);

// A recordset that must be there: using a missing one fails as Basic does
// with an object variable that is not set (error 91).
ado::Recordset& Opened(const RecordsetPtr& rs);

// True when the recordset is past its last row.
bool AtEof(ado::Recordset& rs);
// True when the recordset has no rows (BOF and EOF together).
bool IsEmpty(ado::Recordset& rs);

}  // namespace kdvq
