#include "host/login.h"

namespace kdhost {

com::HRESULT Login::GetConnection(com::IUnknown** connection) {
    if (!connection) return com::E_POINTER;
    *connection = nullptr;
    if (!connection_) return com::E_FAIL;
    return connection_->QueryInterface(com::IID_IUnknown, reinterpret_cast<void**>(connection));
}

com::HRESULT Login::GetTablePrefix(std::string* prefix) {
    if (!prefix) return com::E_POINTER;
    *prefix = prefix_;
    return com::S_OK;
}

}  // namespace kdhost
