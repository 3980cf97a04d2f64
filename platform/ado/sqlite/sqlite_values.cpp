#include "platform/ado/sqlite/sqlite_values.h"

#include <limits>
#include <string>

#include "platform/ado/ado.h"
#include "platform/ado/ado_errors.h"
#include "platform/ado/date_text.h"

namespace ado::sqlite {

using automation::Variant;

Variant ReadColumn(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_INTEGER: {
            sqlite3_int64 v = sqlite3_column_int64(statement, column);
            if (v >= std::numeric_limits<int32_t>::min() && v <= std::numeric_limits<int32_t>::max())
                return Variant::Long(static_cast<int32_t>(v));
            return Variant(static_cast<double>(v));
        }
        case SQLITE_FLOAT:
            return Variant(sqlite3_column_double(statement, column));
        case SQLITE_NULL:
            return Variant::Null();
        default: {
            const char* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
            int size = sqlite3_column_bytes(statement, column);
            return Variant(std::string(text ? text : "", static_cast<size_t>(size)));
        }
    }
}

void BindValue(sqlite3_stmt* statement, int parameter, const Variant& value) {
    switch (value.Type()) {
        case automation::vtEmpty:
        case automation::vtNull:
            sqlite3_bind_null(statement, parameter);
            return;
        case automation::vtInteger:
        case automation::vtLong:
            sqlite3_bind_int64(statement, parameter, value.CLng());
            return;
        case automation::vtBoolean:
            sqlite3_bind_int64(statement, parameter, value.CBool() ? -1 : 0);
            return;
        case automation::vtDouble:
            sqlite3_bind_double(statement, parameter, value.CDbl());
            return;
        case automation::vtDate: {
            std::string text = FormatDateText(value.CDate());
            sqlite3_bind_text(statement, parameter, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
            return;
        }
        case automation::vtString: {
            const std::string& text = value.AsString();
            sqlite3_bind_text(statement, parameter, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
            return;
        }
        default:
            RaiseAdo(adErrInvalidArgument, kFieldSource);
    }
}

}  // namespace ado::sqlite
