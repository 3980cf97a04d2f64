#pragma once
// Values between ODBC and Variants, as the SQLite provider gives them:
//   integers (bit excepted) that fit 32 bits -> Long, larger ones -> Double;
//   DECIMAL/NUMERIC with scale 0 whose value fits 32 bits -> Long, other
//   decimals -> Double; REAL/FLOAT/DOUBLE -> Double; BIT -> Boolean;
//   DATE/TIME/TIMESTAMP -> Date; character and other types -> String
//   (UTF-8); binary -> String of the raw bytes; NULL -> Null.
// Written: each Variant in its own C type (Long, Double, Date as a
// timestamp, String as wide text), converted by the driver to the column's
// type; Boolean as -1/0, or 1/0 into a BIT column; Empty as NULL.
#include <sql.h>
#include <sqlext.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ado/odbc/odbc_handles.h"
#include "platform/automation/variant.h"

namespace ado::odbc {

struct ColumnInfo {
    std::string name;          // the result column's label
    SQLSMALLINT sqlType = SQL_VARCHAR;
    SQLULEN size = 0;          // precision or length
    SQLSMALLINT digits = 0;    // scale
    std::string baseTable;     // as the driver reports them; may be empty
    std::string baseColumn;
};

// The columns of the statement's open result.
std::vector<ColumnInfo> DescribeColumns(const Statement& statement);

// Reads column (1-based) of the current row; columns are read in order.
automation::Variant ReadValue(const Statement& statement, SQLUSMALLINT column, const ColumnInfo& info);

// Long character and binary columns, which servers cannot compare with "=".
bool IsLongType(SQLSMALLINT sqlType);

// Parameter buffers of one execution: they stay alive until the statement
// has run. Bind numbers parameters from 1 in the order of the calls.
class Parameters {
public:
    explicit Parameters(const Statement& statement);
    ~Parameters();
    Parameters(const Parameters&) = delete;
    Parameters& operator=(const Parameters&) = delete;
    // Binds value as a parameter written into (or compared with) a column
    // of this type.
    void Bind(const automation::Variant& value, const ColumnInfo& target);

private:
    struct Slot;
    const Statement& statement_;
    std::vector<std::unique_ptr<Slot>> slots_;
};

}  // namespace ado::odbc
