#include "session/session_upgrader.h"

#include "platform/automation/collection.h"

namespace kdvq {

bool SessionUpgrader::OnEnabled(IKDLogin* login, int32_t& version) {
    TakeLogin(login);
    const SessionGate gate = Gate();
    if (gate.needsTables) {
        auto tables = automation::Collection::Create();
        tables->Add(Variant(prefix_ + "KD_SESSION"));
        tables->Add(Variant(prefix_ + "KD_SESSION_DB_VERSION"));
        if (!CheckForTables(Variant(com::ComPtr<com::IUnknown>(tables)), connection_.Get())) return false;
    }
    // Both operands are evaluated, as the extension lookup also fills the
    // per-thread cache of supported extensions.
    const bool registered = VerifySupportedExtension(connection_.Get(), prefix_, "KDSessionManager");
    if (!(registered && version >= gate.coreMinimum)) return false;
    sessionVersion_ = GetDBVersion(connection_.Get(), prefix_, "KD_SESSION_DB_VERSION");
    return sessionVersion_ >= gate.lowest && sessionVersion_ < gate.below;
}

}  // namespace kdvq
