#pragma once
// The host's resource-string service: texts by number from the host's
// string table, with the caller's values put in for the markers.
#include <memory>

#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"
#include "host/string_table.h"

namespace kdhost {

class ResourceStrings : public HostObject<ResourceStrings, kdvq::IKDResourceStrings> {
public:
    explicit ResourceStrings(std::shared_ptr<const StringTable> table) : table_(std::move(table)) {}
    static const com::IID& InterfaceIid() { return kIidResourceStrings; }

    // The library names itself; the name appears in the error of a
    // missing string.
    com::HRESULT Initialize(const std::string& libraryName) override;
    // A number the table lacks fails with an error naming it.
    com::HRESULT GetString(int32_t id, const kdvq::VariantArray& values, std::string* text) override;

private:
    std::shared_ptr<const StringTable> table_;
    std::string libraryName_;
};

// The text of a substitution value as the table puts it in (Null as empty).
std::string SubstitutionText(const kdvq::Variant& value);

}  // namespace kdhost
