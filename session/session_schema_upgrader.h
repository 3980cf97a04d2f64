#pragma once
// The column and table steps that release 8.3.3 introduced and that 9.0.2
// repeats, so that a repository that skipped 8.3.3 is repaired as well:
// the session version table when absent, the DATABASE_ID, ENTERPRISE_ID and
// SESSION_TYPE_ID columns of KD_SESSION, the retired MOBILE_PACKET_ID
// column, and the KD_SESSION_TYPE table with its three rows.
#include <string>

#include "session/session_upgrader.h"

namespace kdvq {

class SessionSchemaUpgrader : public SessionUpgrader {
protected:
    using SessionUpgrader::SessionUpgrader;

    // Runs every step (a failed one does not stop the others) and answers
    // whether all succeeded. dropMobilePacketSql differs between releases.
    bool RepairSessionSchema(bool oracle, const std::string& dropMobilePacketSql);
    // Writes the release's number straight into the session version table.
    bool StampSessionVersion(const std::string& version);
};

}  // namespace kdvq
