#pragma once
// The session part of a scripted repository as the 8.3.3 and 9.0.2 tests
// start from, and the transcript pieces of the steps the two share.
#include <string>

#include "tests/session/upgrade_harness.h"

namespace kdvq::testing {

// A registered session extension, a core version row with a database id,
// a session table with the given extra columns and the session version.
inline void SessionRepository(ScriptedRepository& repo, std::vector<std::string> sessionColumns, int32_t version) {
    repo.Table("KD_VQ_SUPPORTED_EXTENSIONS", {"NAME"}, {{Variant("KDSessionManager")}});
    repo.Table("KD_VQ_DB_VERSION", {"VERSION", "DATABASE_ID"}, {{Variant(2860), Variant("DB1")}});
    sessionColumns.insert(sessionColumns.begin(), "SESSION_ID");
    repo.Table("KD_SESSION", sessionColumns);
    repo.Version("KD_SESSION_DB_VERSION", version);
}

inline Golden SessionEnabled(const std::string& prefix) {
    return Golden()
        .Open("SELECT * FROM " + prefix + "KD_SESSION")
        .Open("SELECT * FROM " + prefix + "KD_SESSION_DB_VERSION")
        .Open("SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS")
        .Open("select VERSION from " + prefix + "KD_SESSION_DB_VERSION");
}

inline Golden DatabaseIdCopied(const std::string& prefix) {
    return Golden()
        .Open("select DATABASE_ID from " + prefix + "KD_VQ_DB_VERSION")
        .Open("SELECT * FROM " + prefix + "KD_VQ_DB_VERSION")
        .Open("select DATABASE_ID from " + prefix + "KD_SESSION")
        .Step("Updating DATABASE_ID column in " + prefix + "KD_SESSION table",
              "Update " + prefix + "KD_SESSION set DATABASE_ID='DB1'");
}

// The column and table steps on a repository where everything is in place.
inline Golden NothingToRepair(const std::string& prefix) {
    return Golden()
        .Open("select DATABASE_ID from " + prefix + "KD_SESSION")
        .Add(DatabaseIdCopied(prefix))
        .Open("select ENTERPRISE_ID from " + prefix + "KD_SESSION")
        .Missing("select MOBILE_PACKET_ID from " + prefix + "KD_SESSION")
        .Open("SELECT * FROM " + prefix + "KD_SESSION_TYPE")
        .Open("select SESSION_TYPE_ID from " + prefix + "KD_SESSION");
}

const std::vector<std::string> kAllSessionColumns = {"DATABASE_ID", "ENTERPRISE_ID", "SESSION_TYPE_ID"};

}  // namespace kdvq::testing
