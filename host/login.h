#pragma once
// The host's login object: the open repository connection and the table
// prefix, the two things an upgrader takes from it.
#include <string>

#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "platform/ado/ado.h"

namespace kdhost {

class Login : public HostObject<Login, kdvq::IKDLogin> {
public:
    Login(com::ComPtr<ado::Connection> connection, std::string prefix)
        : connection_(std::move(connection)), prefix_(std::move(prefix)) {}
    static const com::IID& InterfaceIid() { return kIidLogin; }

    com::HRESULT GetConnection(com::IUnknown** connection) override;
    com::HRESULT GetTablePrefix(std::string* prefix) override;

    // Operations of the host's login that the upgraders never call.
    com::HRESULT Operation1() override { return com::E_NOTIMPL; }
    com::HRESULT Operation2() override { return com::E_NOTIMPL; }
    com::HRESULT Operation3() override { return com::E_NOTIMPL; }
    com::HRESULT Operation5() override { return com::E_NOTIMPL; }
    com::HRESULT Operation6() override { return com::E_NOTIMPL; }
    com::HRESULT Operation7() override { return com::E_NOTIMPL; }
    com::HRESULT Operation8() override { return com::E_NOTIMPL; }
    com::HRESULT Operation9() override { return com::E_NOTIMPL; }
    com::HRESULT Operation10() override { return com::E_NOTIMPL; }
    com::HRESULT Operation11() override { return com::E_NOTIMPL; }

private:
    com::ComPtr<ado::Connection> connection_;
    std::string prefix_;
};

}  // namespace kdhost
