#pragma once
// Release 9.0.2 of the core tables: numbered subtasks with their sequence
// row, the subtask parameter and history tables, the history's user columns
// filled from KD_VQ_USER, and the HAS_EDITS flag of KD_VQ_VERSIONS.
#include <cstdint>

#include "core/core_upgrader.h"

namespace kdvq {

class KDVqUpgrader902 : public CoreUpgrader {
public:
    KDVqUpgrader902();

    // The statements of one dialect and the two rules in which SQL Server's
    // route differs.
    struct Dialect {
        const char* addSubtaskId;
        const char* insertSubtaskSequence;  // followed by the next id and ", 1)"
        const char* createSubtaskParameters;
        const char* createHistory;
        const char* addHistoryUserId;
        const char* addHistoryUserName;
        const char* addHasEdits;
        // Recreates EXTRA_DATA of a 2769 repository's history table.
        bool resetExtraDataAt2769;
        // The history is filled only after every earlier step succeeded, and
        // its result replaces the running one.
        bool historyReplacesResult;
    };

protected:
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(const Dialect& d);
    bool UpdateHistory();
    int16_t SetSubtaskIDs();
};

}  // namespace kdvq
