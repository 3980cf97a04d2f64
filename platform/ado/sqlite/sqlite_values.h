#pragma once
// Values between SQLite and Variants: INTEGER reads as Long when it fits 32
// bits and as Double otherwise, REAL as Double, TEXT (and BLOB) as String,
// NULL as Null. Written: Integer, Long and Boolean (-1/0) as integers,
// Double as REAL, Date as "YYYY-MM-DD HH:MM:SS" text, Empty as NULL.
#include <sqlite3.h>

#include "platform/automation/variant.h"

namespace ado::sqlite {

automation::Variant ReadColumn(sqlite3_stmt* statement, int column);
// Binds value to parameter (1-based); objects and arrays raise 3001.
void BindValue(sqlite3_stmt* statement, int parameter, const automation::Variant& value);

}  // namespace ado::sqlite
