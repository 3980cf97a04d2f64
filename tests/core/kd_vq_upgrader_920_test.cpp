#include "tests/core/core_test_support.h"
#include "tests/support/scripted_repository.h"

namespace kdvq::testing {
namespace {

const std::string kDrop = "Drop Table KD_VQ_MESSAGING";

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

TEST(KDVqUpgrader920, ScriptedSituations) {
    const std::vector<Situation> cases = {
        {"oracle, fresh repository", kOracle, Repository(Messaging::Missing, false), "True", "", 3354},
        {"sql server, old messaging table: dropped and made anew", kSqlServer,
         Repository(Messaging::OldShape, true), "True", "", 4038},
        {"oracle, current messaging table kept, only the role table made", kOracle,
         Repository(Messaging::Current, false), "True", "", 3354},
        {"sql server, a failed drop is ignored", kSqlServer, Repository(Messaging::OldShape, true, kDrop, 3701),
         "True", "", 3354},
        {"oracle, a failed create is replaced by the next one", kOracle,
         Repository(Messaging::Missing, false,
                    "Create Table KD_VQ_MESSAGING (ID NUMBER(38), TYPE VARCHAR2(64), VERB VARCHAR2(64), NOUN "
                    "VARCHAR2(64), VERSION VARCHAR2(64), PROCESSOR_ID VARCHAR2(255))",
                    1031), "True", "", 3354},
        {"sql server, the last create fails", kSqlServer,
         Repository(Messaging::Current, false, "Create Table KD_VQ_MESSAGING_ROLE (MESSAGE_ID INT, ROLE_ID INT)", 262),
         "False", "", 3354},
    };
    ExpectSituations(New_KDVqUpgrader920, cases);
}

}  // namespace
}  // namespace kdvq::testing
