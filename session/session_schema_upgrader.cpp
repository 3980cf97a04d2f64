#include "session/session_schema_upgrader.h"

#include <vector>

namespace kdvq {
namespace {

struct SessionTypeRow {
    std::string oracleSql;
    std::string sqlServerSql;
    std::string progress;
};

// Oracle reads the word "columns" as a table alias; SQL Server's texts end
// with a semicolon instead.
const std::vector<SessionTypeRow>& SessionTypeRows() {
    static const std::vector<SessionTypeRow> rows = {
        {"Insert into KD_SESSION_TYPE columns (ID, SESSION_TYPE) values (4, 'Electric')",
         "Insert into KD_SESSION_TYPE (ID, SESSION_TYPE) values (4, 'Electric');",
         "Adding 'Electric' to KD_SESSION_TYPE table."},
        {"Insert into KD_SESSION_TYPE columns (ID, SESSION_TYPE) values (5,'Gas')",
         "Insert into KD_SESSION_TYPE (ID, SESSION_TYPE) values (5,'Gas');",
         "Adding 'Gas' to KD_SESSION_TYPE table."},
        {"Insert into KD_SESSION_TYPE columns (ID, SESSION_TYPE) values (6,'Water')",
         "Insert into KD_SESSION_TYPE (ID, SESSION_TYPE) values (6,'Water');",
         "Adding 'Water' to KD_SESSION_TYPE table."},
    };
    return rows;
}

}  // namespace

bool SessionSchemaUpgrader::RepairSessionSchema(bool oracle, const std::string& dropMobilePacketSql) {
    ado::Connection* cn = connection_.Get();
    const std::string session = prefix_ + "KD_SESSION";
    bool result = true;

    if (sessionVersion_ == 0) {
        const bool created = Run(oracle ? "create table " + prefix_ + "KD_SESSION_DB_VERSION (VERSION number(38))"
                                        : "create table KD_SESSION_DB_VERSION (VERSION INT)",
                                 LoadResString(501, {"KD_SESSION_DB_VERSION"}));
        if (created) Starting(LoadResString(603));
        result = result && created;
        const bool inserted = Run(oracle ? "insert into " + prefix_ + "KD_SESSION_DB_VERSION values (1)"
                                         : "insert into KD_SESSION_DB_VERSION values (1)",
                                  LoadResString(504, {"KD_SESSION_DB_VERSION"}));
        result = result && inserted;
    }

    if (!ColumnExists(cn, session, "DATABASE_ID")) {
        const bool ok = Run(oracle ? "Alter table " + prefix_ + "KD_SESSION add DATABASE_ID VARCHAR2(64)"
                                   : "Alter table KD_SESSION add DATABASE_ID VARCHAR(64)",
                            "Adding DATABASE_ID column to KD_SESSION table");
        result = result && ok;
    }

    const bool idCopied = UpdateDatabaseId(prefix_, cn, "KD_SESSION", callback_.Get());
    result = result && idCopied;

    if (!ColumnExists(cn, session, "ENTERPRISE_ID")) {
        const bool ok = Run(oracle ? "Alter table " + prefix_ + "KD_SESSION add ENTERPRISE_ID NUMBER(38)"
                                   : "Alter table KD_SESSION add ENTERPRISE_ID INT",
                            "Adding ENTERPRISE_ID column to KD_SESSION table");
        result = result && ok;
    }

    if (ColumnExists(cn, session, "MOBILE_PACKET_ID")) {
        const bool ok = Run(dropMobilePacketSql, "Dropping MOBILE_PACKET_ID column from KD_SESSION table");
        result = result && ok;
    }

    if (!TableExists(prefix_ + "KD_SESSION_TYPE", cn)) {
        const bool created = Run(oracle ? "create table KD_SESSION_TYPE (ID NUMBER(38), SESSION_TYPE VARCHAR2(64))"
                                        : "create table KD_SESSION_TYPE (ID INT, SESSION_TYPE VARCHAR(64))",
                                 LoadResString(501, {"KD_SESSION_TYPE"}));
        result = result && created;
        if (result) Starting(LoadResString(603));
        for (const SessionTypeRow& row : SessionTypeRows()) {
            const bool ok = Run(oracle ? row.oracleSql : row.sqlServerSql, row.progress);
            result = result && ok;
        }
    }

    if (!ColumnExists(cn, session, "SESSION_TYPE_ID")) {
        const bool ok = Run(oracle ? "Alter table KD_SESSION add SESSION_TYPE_ID NUMBER(38)"
                                   : "Alter table KD_SESSION add SESSION_TYPE_ID INT",
                            "Adding SESSION_TYPE_ID column to KD_SESSION table");
        result = result && ok;
    }
    return result;
}

bool SessionSchemaUpgrader::StampSessionVersion(const std::string& version) {
    return Run("update " + prefix_ + "KD_SESSION_DB_VERSION set VERSION = " + version,
               LoadResString(508, {"KD_SESSION_DB_VERSION"}));
}

}  // namespace kdvq
