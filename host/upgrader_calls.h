#pragma once
// The calls the host makes on an upgrader, with a failed call turned into
// the description of its failure.
#include <cstdint>
#include <string>

#include "framework/upgrader_interfaces.h"
#include "platform/com/guid.h"

namespace kdhost {

using UpgraderPtr = com::ComPtr<kdvq::IKDVqDatabaseUpgrader>;

// The description of the failure a call just returned (its error info, or
// a text for the result when it carries none).
std::string DescribeFailure(com::HRESULT hr);

// A new instance through the component runtime (which loads the library);
// null with *error set when it cannot be created.
UpgraderPtr NewUpgrader(const com::CLSID& clsid, std::string* error);

// Enabled with the version (each call gets its own copy, since the
// upgrader takes it by reference). False with *error set when the call
// failed.
bool AskEnabled(kdvq::IKDVqDatabaseUpgrader* upgrader, kdvq::IKDLogin* login, int32_t version, bool* enabled,
                std::string* error);

// The upgrader's Name, or fallback when the call fails.
std::string NameOf(kdvq::IKDVqDatabaseUpgrader* upgrader, const std::string& fallback);

}  // namespace kdhost
