#pragma once
// The two interfaces every upgrader class implements, in their slot order.
#include <cstdint>
#include <string>

#include "framework/host_interfaces.h"
#include "platform/automation/variant.h"

namespace kdvq {

using automation::VARIANT_BOOL;

extern const com::IID IID_IKDVqDatabaseUpgrader;  // {F4E9B275-F1BB-4161-941A-5793C263C06B}
extern const com::IID IID_IKDRegInCat;            // {774D6C6F-81BC-4066-90EE-4839D6B52B38}

struct IKDVqDatabaseUpgrader : com::IUnknown {
    virtual HRESULT Enabled(IKDLogin* pLogin, int32_t* lVqDBVersion, VARIANT_BOOL* result) = 0;  // 1
    virtual HRESULT Name(std::string* result) = 0;                                               // 2
    virtual HRESULT Description(std::string* result) = 0;                                        // 3
    virtual HRESULT TavixSystemTables(Variant* result) = 0;                                      // 4
    virtual HRESULT Execute(IKDProgressCallback* pCallback, VARIANT_BOOL* result) = 0;           // 5
};

struct IKDRegInCat : com::IUnknown {
    virtual HRESULT CategoriesToReg(Variant* result) = 0;  // 1
};

}  // namespace kdvq

template <> struct com::InterfaceId<kdvq::IKDVqDatabaseUpgrader> { static const com::IID& Get() { return kdvq::IID_IKDVqDatabaseUpgrader; } };
template <> struct com::InterfaceId<kdvq::IKDRegInCat> { static const com::IID& Get() { return kdvq::IID_IKDRegInCat; } };
