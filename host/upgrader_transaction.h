#pragma once
// The transaction the run puts around one upgrader's Enabled and Execute,
// so that an interruption (a signal, a kill, a crash, a lost connection)
// takes back the unfinished upgrader whole. It is committed when the
// upgrader returns or raises, so that a False answer or a failure keeps
// exactly what the upgrader did, as it would without the transaction.
#include <string>

#include "platform/ado/ado.h"

namespace kdhost {

class UpgraderTransaction {
public:
    // With use false nothing is begun and Commit succeeds at once.
    UpgraderTransaction(ado::Connection* connection, bool use) : connection_(use ? connection : nullptr) {}
    // Takes the work back when it was not committed (an exception passes).
    ~UpgraderTransaction();
    UpgraderTransaction(const UpgraderTransaction&) = delete;
    UpgraderTransaction& operator=(const UpgraderTransaction&) = delete;

    // False, with the reason, when the transaction cannot be begun.
    bool Begin(std::string* error);
    // False, with the reason, when the commit failed; the work is then
    // taken back.
    bool Commit(std::string* error);

private:
    ado::Connection* connection_;
    bool open_ = false;
};

}  // namespace kdhost
