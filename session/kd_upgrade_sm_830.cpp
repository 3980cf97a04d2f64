#include "session/kd_upgrade_sm_830.h"

#include "library/class_table.h"

namespace kdvq {

bool KDUpgradeSM830::OnExecute() {
    sessionNodeTypeId_ = GetNodeTypeId(prefix_, connection_.Get(), "Session");
    // The lookup answers 0 when no node type has that name; -1 is an id that
    // was never assigned. Either way the records cannot be given a node type.
    if (sessionNodeTypeId_ == -1 || sessionNodeTypeId_ == 0) {
        Starting(LoadResString(602));
        std::string message = "Could not find Session node type!" + kCrLf + Tag("IKDVqDatabaseUpgrader_Execute");
        std::string source = kSource;
        ReportError(message, source, false, 1, automation::BasicError(0, "", ""));
        return false;
    }
    return UpgraderBase::OnExecute();
}

bool KDUpgradeSM830::CreateVersionTable(const std::string& createSql) {
    bool result = Run(createSql, LoadResString(501, {"KD_SESSION_DB_VERSION"}));
    if (result) Starting(LoadResString(603));
    const bool inserted = Run("insert into KD_SESSION_DB_VERSION values (1)", LoadResString(504, {"KD_SESSION_DB_VERSION"}));
    return result && inserted;
}

bool KDUpgradeSM830::CopyVersionRecords(const std::string& insertHead) {
    // Both tests run, the second even when the first table is missing.
    const bool coreVersions = TableExists("KD_VQ_VERSIONS", connection_.Get());
    const bool sessionVersions = TableExists("KD_SESSION_VERSIONS", connection_.Get());
    if (!(coreVersions && sessionVersions)) return true;
    return Run(insertHead + " select " + std::to_string(sessionNodeTypeId_) +
                   ",session_id,base,name,description,status,ver_access,'unknown' from " + prefix_ +
                   "KD_SESSION_VERSIONS",
               LoadResString(505, {"KD_SESSION_VERSION", "KD_VQ_VERSIONS"}));
}

bool KDUpgradeSM830::UpgradeOracle() {
    return Handled<bool>(Tag("UpgradeOracle"), [&] {
        bool result = true;
        if (!TableExists("KD_SESSION_DB_VERSION", connection_.Get()))
            result = CreateVersionTable("create table KD_SESSION_DB_VERSION (VERSION number(38))");

        // "columns" stands where Oracle reads a table alias.
        if (!CopyVersionRecords("insert into " + prefix_ + "KD_VQ_VERSIONS columns" +
                                " (node_type_id,node_id,base,name,description,status,ver_access,user_name)"))
            return false;

        // The old table is retired even when there was no core versions
        // table to copy it into; a failed backup keeps it in place.
        if (TableExists("KD_SESSION_VERSIONS", connection_.Get())) {
            if (Run("create table KD_SESSION_VERSIONS_BACKUP as select * from " + prefix_ + "KD_SESSION_VERSIONS",
                    LoadResString(506, {"KD_SESSION_VERSION"}))) {
                const bool dropped = Run("drop table " + prefix_ + "KD_SESSION_VERSIONS cascade constraints",
                                         LoadResString(507, {"KD_SESSION_VERSION"}));
                result = result && dropped;
            }
        }
        return result;
    });
}

bool KDUpgradeSM830::UpgradeMSSQL() {
    return Handled<bool>(Tag("UpgradeMSSQL"), [&] {
        bool result = true;
        if (!TableExists("KD_SESSION_DB_VERSION", connection_.Get()))
            result = CreateVersionTable("create table KD_SESSION_DB_VERSION (VERSION INT)");

        // SQL Server keeps the old table after the copy.
        if (!CopyVersionRecords("insert into " + prefix_ + "KD_VQ_VERSIONS (node_type_id,node_id,base,name,description,status," +
                                "ver_access,user_name)"))
            return false;
        return result;
    });
}

UpgraderPtr New_KDUpgradeSM830() { return UpgraderPtr(new KDUpgradeSM830()); }

}  // namespace kdvq
