#include "platform/ado/odbc/odbc_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/ado/ado.h"
#include "platform/ado/ado_errors.h"
#include "platform/ado/odbc/odbc_text.h"
#include "platform/automation/basic_date.h"

namespace ado::odbc {

using automation::Variant;

namespace {

constexpr SQLSMALLINT kNameUnits = 256;

std::string ColumnText(const Statement& statement, SQLUSMALLINT column, SQLUSMALLINT field) {
    SQLWCHAR buffer[kNameUnits] = {};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(statement.Get(), column, field, buffer, sizeof buffer, &length, nullptr)))
        return "";  // drivers that cannot tell leave the name empty
    return FromWideBuffer(buffer, kNameUnits);
}

// Long when the value is whole and fits 32 bits, else Double.
Variant WholeNumber(double value) {
    if (value >= std::numeric_limits<int32_t>::min() && value <= std::numeric_limits<int32_t>::max() &&
        value == std::trunc(value))
        return Variant::Long(static_cast<int32_t>(value));
    return Variant(value);
}

// Reads a fixed-size value; false when it is NULL.
template <class T>
bool ReadFixed(const Statement& statement, SQLUSMALLINT column, SQLSMALLINT cType, T* value) {
    SQLLEN indicator = 0;
    statement.Check(SQLGetData(statement.Get(), column, cType, value, sizeof(T), &indicator), "SQLGetData");
    return indicator != SQL_NULL_DATA;
}

// Reads a value of any length in pieces; false when it is NULL. unit is the
// size of one character of cType (the terminator the driver writes).
bool ReadPieces(const Statement& statement, SQLUSMALLINT column, SQLSMALLINT cType, size_t unit,
                std::string* bytes) {
    char buffer[4096];
    const SQLLEN room = static_cast<SQLLEN>(sizeof buffer - unit);  // bytes of data one piece holds
    bytes->clear();
    for (;;) {
        SQLLEN indicator = 0;
        SQLRETURN rc = SQLGetData(statement.Get(), column, cType, buffer, sizeof buffer, &indicator);
        if (rc == SQL_NO_DATA) return true;  // the previous piece was the last
        statement.Check(rc, "SQLGetData");
        if (indicator == SQL_NULL_DATA) return false;
        bool cut = indicator == SQL_NO_TOTAL || indicator > room;
        bytes->append(buffer, static_cast<size_t>(cut ? room : indicator));
        if (!cut) return true;
    }
}

double SerialOf(const SQL_TIMESTAMP_STRUCT& t) {
    int64_t day = automation::SerialDayOf(t.year, t.month, t.day);
    double time = (t.hour * 3600.0 + t.minute * 60.0 + t.second + t.fraction / 1e9) / 86400.0;
    // Before the base date the time of day still counts forward from midnight.
    return day >= 0 ? day + time : day - time;
}

// digits: the fractional-second digits the column keeps (0 to 6); the
// time is rounded to them, so that a value read back compares equal.
SQL_TIMESTAMP_STRUCT TimestampOf(double serial, int digits) {
    constexpr int64_t kMicrosPerDay = 86400LL * 1000000;
    if (!std::isfinite(serial)) serial = 0;
    int64_t unit = 1;
    for (int d = std::clamp(digits, 0, 6); d < 6; ++d) unit *= 10;
    double whole = std::trunc(serial);
    int64_t micros = std::llround(std::fabs(serial - whole) * kMicrosPerDay / unit) * unit;
    int64_t day = static_cast<int64_t>(whole);
    if (micros >= kMicrosPerDay) {  // rounding reached the next midnight
        micros -= kMicrosPerDay;
        day += serial >= 0 ? 1 : -1;
    }
    automation::CivilDate civil = automation::CivilDateOf(day);
    SQL_TIMESTAMP_STRUCT t{};
    t.year = static_cast<SQLSMALLINT>(civil.year);
    t.month = static_cast<SQLUSMALLINT>(civil.month);
    t.day = static_cast<SQLUSMALLINT>(civil.day);
    t.hour = static_cast<SQLUSMALLINT>(micros / 3600000000LL);
    t.minute = static_cast<SQLUSMALLINT>(micros / 60000000 % 60);
    t.second = static_cast<SQLUSMALLINT>(micros / 1000000 % 60);
    t.fraction = static_cast<SQLUINTEGER>(micros % 1000000 * 1000);
    return t;
}

bool IsDateTimeType(SQLSMALLINT sqlType) {
    return sqlType == SQL_TYPE_TIMESTAMP || sqlType == SQL_TIMESTAMP || sqlType == SQL_TYPE_TIME ||
           sqlType == SQL_TIME || sqlType == SQL_TYPE_DATE || sqlType == SQL_DATE;
}

bool IsCharacterType(SQLSMALLINT sqlType) {
    switch (sqlType) {
        case SQL_CHAR:
        case SQL_VARCHAR:
        case SQL_LONGVARCHAR:
        case SQL_WCHAR:
        case SQL_WVARCHAR:
        case SQL_WLONGVARCHAR:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::vector<ColumnInfo> DescribeColumns(const Statement& statement) {
    SQLSMALLINT count = 0;
    statement.Check(SQLNumResultCols(statement.Get(), &count), "SQLNumResultCols");
    std::vector<ColumnInfo> columns(static_cast<size_t>(count));
    for (SQLUSMALLINT i = 1; i <= count; ++i) {
        ColumnInfo& c = columns[i - 1];
        SQLWCHAR name[kNameUnits] = {};
        SQLSMALLINT nameLength = 0, nullable = 0;
        statement.Check(SQLDescribeColW(statement.Get(), i, name, kNameUnits, &nameLength, &c.sqlType, &c.size,
                                        &c.digits, &nullable),
                        "SQLDescribeCol");
        c.name = FromWideBuffer(name, kNameUnits);
        c.baseTable = ColumnText(statement, i, SQL_DESC_BASE_TABLE_NAME);
        c.baseColumn = ColumnText(statement, i, SQL_DESC_BASE_COLUMN_NAME);
    }
    return columns;
}

bool IsLongType(SQLSMALLINT sqlType) {
    return sqlType == SQL_LONGVARCHAR || sqlType == SQL_WLONGVARCHAR || sqlType == SQL_LONGVARBINARY;
}

Variant ReadValue(const Statement& statement, SQLUSMALLINT column, const ColumnInfo& info) {
    switch (info.sqlType) {
        case SQL_BIT: {
            SQLCHAR bit = 0;
            return ReadFixed(statement, column, SQL_C_BIT, &bit) ? Variant::Boolean(bit != 0) : Variant::Null();
        }
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
        case SQL_BIGINT: {
            SQLBIGINT value = 0;
            if (!ReadFixed(statement, column, SQL_C_SBIGINT, &value)) return Variant::Null();
            return WholeNumber(static_cast<double>(value));
        }
        case SQL_DECIMAL:
        case SQL_NUMERIC:
        case SQL_REAL:
        case SQL_FLOAT:
        case SQL_DOUBLE: {
            double value = 0;
            if (!ReadFixed(statement, column, SQL_C_DOUBLE, &value)) return Variant::Null();
            bool exact = (info.sqlType == SQL_DECIMAL || info.sqlType == SQL_NUMERIC) && info.digits == 0;
            return exact ? WholeNumber(value) : Variant(value);
        }
        case SQL_TYPE_DATE:
        case SQL_TYPE_TIME:
        case SQL_TYPE_TIMESTAMP:
        case SQL_DATE:
        case SQL_TIME:
        case SQL_TIMESTAMP: {
            SQL_TIMESTAMP_STRUCT stamp{};
            if (!ReadFixed(statement, column, SQL_C_TYPE_TIMESTAMP, &stamp)) return Variant::Null();
            if (info.sqlType == SQL_TYPE_TIME || info.sqlType == SQL_TIME) {
                // A time of day alone is a Date on the base day.
                stamp.year = 1899;
                stamp.month = 12;
                stamp.day = 30;
            }
            return Variant::Date(SerialOf(stamp));
        }
        case SQL_BINARY:
        case SQL_VARBINARY:
        case SQL_LONGVARBINARY: {
            std::string bytes;
            return ReadPieces(statement, column, SQL_C_BINARY, 0, &bytes) ? Variant(std::move(bytes)) : Variant::Null();
        }
        default: {
            std::string bytes;
            if (!ReadPieces(statement, column, SQL_C_WCHAR, sizeof(SQLWCHAR), &bytes)) return Variant::Null();
            return Variant(FromWide(reinterpret_cast<const SQLWCHAR*>(bytes.data()), bytes.size() / sizeof(SQLWCHAR)));
        }
    }
}

struct Parameters::Slot {
    SQLBIGINT integer = 0;
    double real = 0;
    SQLCHAR bit = 0;
    SQL_TIMESTAMP_STRUCT stamp{};
    WideText text;
    SQLLEN indicator = 0;
};

Parameters::Parameters(const Statement& statement) : statement_(statement) {}
// The statement keeps no pointer into buffers that are about to go.
Parameters::~Parameters() { SQLFreeStmt(statement_.Get(), SQL_RESET_PARAMS); }

void Parameters::Bind(const Variant& value, const ColumnInfo& target) {
    auto slot = std::make_unique<Slot>();
    Slot& s = *slot;
    SQLSMALLINT cType = SQL_C_WCHAR;
    SQLPOINTER data = nullptr;
    SQLLEN bufferLength = 0;
    SQLULEN size = target.size;
    bool bitColumn = target.sqlType == SQL_BIT;
    switch (value.Type()) {
        case automation::vtEmpty:
        case automation::vtNull:
            s.indicator = SQL_NULL_DATA;
            break;
        case automation::vtInteger:
        case automation::vtLong:
        case automation::vtBoolean: {
            // Basic's True is -1; a BIT column takes it as 1.
            int32_t number = value.Type() == automation::vtBoolean ? (value.CBool() ? -1 : 0) : value.CLng();
            if (bitColumn) {
                s.bit = number != 0;
                cType = SQL_C_BIT;
                data = &s.bit;
            } else {
                s.integer = number;
                cType = SQL_C_SBIGINT;
                data = &s.integer;
            }
            break;
        }
        case automation::vtDouble:
            s.real = value.CDbl();
            cType = SQL_C_DOUBLE;
            data = &s.real;
            break;
        case automation::vtDate:
            s.stamp = TimestampOf(value.CDate(), IsDateTimeType(target.sqlType) ? target.digits : 0);
            cType = SQL_C_TYPE_TIMESTAMP;
            data = &s.stamp;
            break;
        case automation::vtString:
            s.text = ToWide(value.AsString());
            data = s.text.empty() ? static_cast<SQLPOINTER>(&s.bit) : static_cast<SQLPOINTER>(&s.text[0]);
            bufferLength = static_cast<SQLLEN>(s.text.size() * sizeof(SQLWCHAR));
            s.indicator = bufferLength;
            // A text longer than the column is the server's to refuse.
            if (IsCharacterType(target.sqlType) && s.text.size() > size) size = s.text.size();
            break;
        default:
            RaiseAdo(adErrInvalidArgument, kFieldSource);
    }
    if (size == 0) size = 1;
    auto number = static_cast<SQLUSMALLINT>(slots_.size() + 1);
    statement_.Check(SQLBindParameter(statement_.Get(), number, SQL_PARAM_INPUT, cType, target.sqlType, size,
                                      target.digits, data, bufferLength, &s.indicator),
                     "SQLBindParameter");
    slots_.push_back(std::move(slot));
}

}  // namespace ado::odbc
