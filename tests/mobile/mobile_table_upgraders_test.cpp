// Mobile 9.0.1 (stored displays), 9.0.2 (time stamp) and 9.1 SP1 (packet
// state) through the scripted provider, each dialect, with the deliberate
// texts and the version left alone after a failure.
#include <gtest/gtest.h>

#include "tests/support/scripted_repository.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

// The mobile part at mobileVersion with stateColumns beside NODE_ID and the
// stored display table or not; the failing statement fails with
// nativeError.
Script Repository(int32_t mobileVersion, std::vector<std::string> stateColumns = {}, bool storedDisplayTable = false,
                  std::string failing = "", int32_t nativeError = 0) {
    return [=](ado::ScriptedProvider& p) {
        ScriptedRepository repo(&p);
        repo.Version("KD_MOBILE_DB_VERSION", mobileVersion);
        std::vector<std::string> columns = stateColumns;
        columns.insert(columns.begin(), "NODE_ID");
        repo.Table("KD_MOBILE_STATE", columns);
        if (storedDisplayTable) repo.Table("KD_MOBILE_STORED_DISPLAY", {"ID", "STORED_DISPLAY"});
        if (!failing.empty()) repo.Fail(failing, {nativeError});
    };
}

// Each upgrader on a fresh repository in each dialect, then its own
// situations.
TEST(MobileTableUpgraders, ScriptedSituations) {
    std::vector<Situation> mobile901 = {
        {"Mobile901TableThere", kOracle, Repository(1601, {}, true), "True", "", 2860},
        // A failed row does not stop the others; it keeps the version.
        {"Mobile901FailedRow", kOracle,
         Repository(1601, {}, false,
                    "Insert into KD_MOBILE_STORED_DISPLAY (ID, STORED_DISPLAY) values (3,'Water Design')", 1),
         "False", "", 2860},
    };
    std::vector<Situation> mobile902 = {
        {"Mobile902ColumnThere", kSqlServer, Repository(2408, {"TIME_STAMP"}), "True", "", 2860},
        {"Mobile902Fails", kSqlServer,
         Repository(2408, {}, false, "Alter table KD_MOBILE_STATE add TIME_STAMP DATETIME", 2705), "False", "", 2860},
    };
    std::vector<Situation> mobile91SP1 = {
        {"Mobile91SP1ColumnThere", kSqlServer, Repository(2756, {"PACKET_STATE"}), "True", "", 2860},
        {"Mobile91SP1FailedAddSkipsReset", kOracle,
         Repository(2756, {}, false, "Alter table KD_MOBILE_STATE add PACKET_STATE NUMBER(38)", 1430), "False", "",
         2860},
    };
    for (const Dialect& d : kDialects) {
        mobile901.push_back({"Mobile901" + d.Name(), d.Provider(), Repository(1601), "True", "", 2860});
        // The time stamp's progress text names another column; it always has.
        mobile902.push_back({"Mobile902" + d.Name(), d.Provider(), Repository(2408), "True", "", 2860});
        mobile91SP1.push_back(
            {"Mobile91SP1" + d.Name(), d.Provider(), Repository(2756, {"TIME_STAMP"}), "True", "", 2860});
    }
    ExpectSituations(New_KDUpgradeMobile901, mobile901);
    ExpectSituations(New_KDUpgradeMobile902, mobile902);
    ExpectSituations(New_KDUpgradeMobile91SP1, mobile91SP1);
}

}  // namespace
}  // namespace kdvq::testing
