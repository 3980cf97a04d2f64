#pragma once
// The session part of a scripted repository as the session tests
// start from.
#include <string>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

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

const std::vector<std::string> kAllSessionColumns = {"DATABASE_ID", "ENTERPRISE_ID", "SESSION_TYPE_ID"};

}  // namespace kdvq::testing
