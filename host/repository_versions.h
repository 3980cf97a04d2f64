#pragma once
// The four parts of a repository and the version number each keeps in its
// own one-row version table.
#include <array>
#include <cstdint>
#include <string>

#include "platform/ado/ado.h"

namespace kdhost {

struct RepositoryPart {
    const char* name;          // "core", "session", "workflow", "mobile"
    const char* versionTable;  // without table prefix
};

constexpr std::array<RepositoryPart, 4> kRepositoryParts = {{
    {"core", "KD_VQ_DB_VERSION"},
    {"session", "KD_SESSION_DB_VERSION"},
    {"workflow", "KD_WMS_DB_VERSION"},
    {"mobile", "KD_MOBILE_DB_VERSION"},
}};

// In the order of kRepositoryParts.
using RepositoryVersions = std::array<int32_t, 4>;

// The VERSION of the table's first row, read without changing anything; 0
// when the table is missing, empty or holds no number.
int32_t ReadVersion(ado::Connection* connection, const std::string& table);
RepositoryVersions ReadVersions(ado::Connection* connection, const std::string& prefix);
int32_t ReadCoreVersion(ado::Connection* connection, const std::string& prefix);
// Reads the core version during a run, where its table is known to exist:
// false (with the failure's description) when the read fails, so that a
// failed read is not mistaken for an old repository.
bool TryReadCoreVersion(ado::Connection* connection, const std::string& prefix, int32_t* version,
                        std::string* error);

// "core 1206, session 0, workflow 1206, mobile 0"
std::string DescribeVersions(const RepositoryVersions& versions);

}  // namespace kdhost
