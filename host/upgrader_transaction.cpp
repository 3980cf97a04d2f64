#include "host/upgrader_transaction.h"

#include "platform/automation/basic_error.h"

namespace kdhost {

namespace {

template <class Call>
bool Try(Call call, std::string* error) {
    try {
        call();
        return true;
    } catch (const automation::BasicError& e) {
        *error = e.Description();
    } catch (const std::exception& e) {
        *error = e.what();
    }
    return false;
}

}  // namespace

UpgraderTransaction::~UpgraderTransaction() {
    if (!open_ || !connection_->InOuterTransaction()) return;
    try {
        connection_->RollbackOuterTransaction();
    } catch (...) {
        // The failure that is passing through is the one to report.
    }
}

bool UpgraderTransaction::Begin(std::string* error) {
    if (!connection_) return true;
    open_ = Try([&] { connection_->BeginOuterTransaction(); }, error);
    if (!open_) *error = "its transaction could not be begun: " + *error;
    return open_;
}

bool UpgraderTransaction::Commit(std::string* error) {
    if (!open_) return true;
    open_ = false;
    if (Try([&] { connection_->CommitOuterTransaction(); }, error)) return true;
    *error = "its work could not be committed and was taken back: " + *error;
    return false;
}

}  // namespace kdhost
