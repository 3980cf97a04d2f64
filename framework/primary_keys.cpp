// Gives each listed table a primary key on its single key column.
#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"

namespace kdvq {

namespace {

std::string NotNullStatement(const std::string& table, const std::string& column, bool oracle) {
    if (oracle) return "ALTER TABLE " + table + " MODIFY (" + column + " NUMBER(38) NOT NULL)";
    return "ALTER TABLE " + table + " ALTER COLUMN " + column + " INT NOT NULL";
}

}  // namespace

bool AddPrimaryKeys(IKDProgressCallback* callback, ado::Connection* connection, automation::Dictionary& keys,
                    bool oracle) {
    std::string table;
    std::string column;
    try {
        if (keys.Count() == 0) return false;
        for (int32_t i = 0; i < keys.Count(); ++i) {
            table = keys.Keys()[i].CStr();
            column = keys.Items()[i].CStr();
            const bool notNull = DoCommand(connection, NotNullStatement(table, column, oracle),
                                           LoadResString(512, {column, table}), callback, false);
            const bool keyAdded = DoCommand(connection, "ALTER TABLE " + table + " ADD PRIMARY KEY (" + column + ")",
                                            LoadResString(511, {table}), callback, false);
            if (!notNull || !keyAdded) return false;
        }
        StepFinished(callback, LoadResString(102));
        return true;
    } catch (...) {
        automation::BasicError failure = automation::CurrentError();
        ReportFailure("modMain::AddPrimaryKeys" + kCrLf + "Failed to add primary key '" + column + "' for table '" +
                          table + "'" + kCrLf + failure.Description(),
                      true, 1);
        return false;
    }
}

}  // namespace kdvq
