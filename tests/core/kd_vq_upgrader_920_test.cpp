#include "tests/core/core_test_support.h"
#include "tests/support/scripted_repository.h"

namespace kdvq::testing {
namespace {

const std::string kMessaging = "SELECT * FROM KD_VQ_MESSAGING";
const std::string kProcessorProbe = "select PROCESSOR_ID from KD_VQ_MESSAGING";
const std::string kMessagingRole = "SELECT * FROM KD_VQ_MESSAGING_ROLE";
const std::string kDrop = "Drop Table KD_VQ_MESSAGING";
const std::string kOraCreate =
    "Create Table KD_VQ_MESSAGING (ID NUMBER(38), TYPE VARCHAR2(64), VERB VARCHAR2(64), NOUN VARCHAR2(64), "
    "VERSION VARCHAR2(64), PROCESSOR_ID VARCHAR2(255))";
const std::string kOraCreateRole = "Create Table KD_VQ_MESSAGING_ROLE (MESSAGE_ID NUMBER(38), ROLE_ID NUMBER(38))";
const std::string kSqlCreate =
    "Create Table KD_VQ_MESSAGING (ID INT, TYPE VARCHAR(64), VERB VARCHAR(64), NOUN VARCHAR(64), "
    "VERSION VARCHAR(64), PROCESSOR_ID VARCHAR(255))";
const std::string kSqlCreateRole = "Create Table KD_VQ_MESSAGING_ROLE (MESSAGE_ID INT, ROLE_ID INT)";

enum class Messaging { Missing, OldShape, Current };

// The messaging tables as found, changing with the statements that run.
Script Repository(Messaging messaging, bool roleTable, std::string failing = "", int32_t nativeError = 0) {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p);
        repo.Version("KD_VQ_DB_VERSION", 3354);
        if (messaging == Messaging::OldShape) repo.Table("KD_VQ_MESSAGING", {"ID"});
        if (messaging == Messaging::Current) repo.Table("KD_VQ_MESSAGING", {"ID", "PROCESSOR_ID"});
        if (roleTable) repo.Table("KD_VQ_MESSAGING_ROLE", {"MESSAGE_ID"});
        if (!failing.empty()) repo.Fail(failing, {nativeError});
    };
}

Lines Created(const std::string& table, const std::string& sql) {
    return Join({Step("res501(" + table + ")", sql), {"START res611(" + table + ")"}});
}

TEST(KDVqUpgrader920, ScriptedSituations) {
    const Lines missingChecked = {Missing(kMessaging), Missing(kProcessorProbe), Missing(kMessaging)};
    const std::vector<ScriptedCase> cases = {
        {"oracle, fresh repository", kOracle, 3354, Repository(Messaging::Missing, false), "True",
         Join({missingChecked,
                 Created("KD_VQ_MESSAGING", kOraCreate),
                 {Missing(kMessagingRole)},
                 Created("KD_VQ_MESSAGING_ROLE", kOraCreateRole),
                 CoreVersionWritten(4039)})},
        {"sql server, old messaging table: dropped and made anew", kSqlServer, 4038,
         Repository(Messaging::OldShape, true), "True",
         Join({{Opened(kMessaging), Missing(kProcessorProbe)},
                 Step("res507(KD_VQ_MESSAGING)", kDrop),
                 {Missing(kMessaging)},
                 Created("KD_VQ_MESSAGING", kSqlCreate),
                 {Opened(kMessagingRole)},
                 CoreVersionWritten(4039)})},
        {"oracle, current messaging table kept, only the role table made", kOracle, 3354,
         Repository(Messaging::Current, false), "True",
         Join({{Opened(kMessaging), Opened(kProcessorProbe), Opened(kMessaging), Missing(kMessagingRole)},
                 Created("KD_VQ_MESSAGING_ROLE", kOraCreateRole),
                 CoreVersionWritten(4039)})},
        {"sql server, a failed drop is ignored", kSqlServer, 3354,
         Repository(Messaging::OldShape, true, kDrop, 3701), "True",
         Join({{Opened(kMessaging), Missing(kProcessorProbe)},
                 FailedStep("res507(KD_VQ_MESSAGING)", kDrop, 3701, 1),
                 {Opened(kMessaging), Opened(kMessagingRole)},
                 CoreVersionWritten(4039)})},
        {"oracle, a failed create is replaced by the next one", kOracle, 3354,
         Repository(Messaging::Missing, false, kOraCreate, 1031), "True",
         Join({missingChecked,
                 FailedStep("res501(KD_VQ_MESSAGING)", kOraCreate, 1031, 1),
                 {Missing(kMessagingRole)},
                 Created("KD_VQ_MESSAGING_ROLE", kOraCreateRole),
                 CoreVersionWritten(4039)})},
        {"sql server, the last create fails", kSqlServer, 3354,
         Repository(Messaging::Current, false, kSqlCreateRole, 262), "False",
         {Opened(kMessaging), Opened(kProcessorProbe), Opened(kMessaging), Missing(kMessagingRole),
          "START res501(KD_VQ_MESSAGING_ROLE)", "EXEC " + kSqlCreateRole + " => ERROR 262",
          CommandFailure(1, kSqlCreateRole)}},
    };
    ExpectScripted(New_KDVqUpgrader920, cases);
}

}  // namespace
}  // namespace kdvq::testing
