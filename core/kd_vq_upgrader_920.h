#pragma once
// Release 9.2.0 of the core tables: the messaging tables. A messaging table
// of the earlier shape (without PROCESSOR_ID) is dropped with its rows.
#include "core/core_upgrader.h"

namespace kdvq {

class KDVqUpgrader920 : public CoreUpgrader {
public:
    KDVqUpgrader920();

    struct Dialect {
        const char* routine;  // the routine's name in its error tag
        const char* createMessaging;
        const char* createMessagingRole;
    };

protected:
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool UpgradeSchema(const Dialect& d);
    bool DropOldMessagingTable();
    // Creates a missing table; the statement's result replaces ok.
    void CreateMissing(const char* table, const char* sql, bool& ok);
};

}  // namespace kdvq
