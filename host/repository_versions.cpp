#include "host/repository_versions.h"

#include "platform/automation/basic_error.h"

namespace kdhost {

namespace {

int32_t ReadFirstVersion(ado::Connection* connection, const std::string& table) {
    com::ComPtr<ado::Recordset> rows = ado::NewRecordset();
    rows->SetCursorLocation(ado::adUseServer);
    rows->Open("select VERSION from " + table, connection, ado::adOpenForwardOnly, ado::adLockReadOnly);
    int32_t version = 0;
    if (!rows->EOF()) {
        ado::Variant value = rows->Get("VERSION");
        if (value.IsNumeric()) version = value.CLng();
    }
    rows->Close();
    return version;
}

}  // namespace

int32_t ReadVersion(ado::Connection* connection, const std::string& table) {
    try {
        return ReadFirstVersion(connection, table);
    } catch (...) {
        // A part that is not installed has no version table.
        return 0;
    }
}

bool TryReadCoreVersion(ado::Connection* connection, const std::string& prefix, int32_t* version,
                        std::string* error) {
    try {
        *version = ReadFirstVersion(connection, prefix + kRepositoryParts[0].versionTable);
        return true;
    } catch (...) {
        *error = automation::CurrentError().Description();
        return false;
    }
}

RepositoryVersions ReadVersions(ado::Connection* connection, const std::string& prefix) {
    RepositoryVersions versions{};
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) {
        versions[i] = ReadVersion(connection, prefix + kRepositoryParts[i].versionTable);
    }
    return versions;
}

int32_t ReadCoreVersion(ado::Connection* connection, const std::string& prefix) {
    return ReadVersion(connection, prefix + kRepositoryParts[0].versionTable);
}

std::string DescribeVersions(const RepositoryVersions& versions) {
    std::string text;
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) {
        text += (i ? ", " : "") + std::string(kRepositoryParts[i].name) + " " + std::to_string(versions[i]);
    }
    return text;
}

}  // namespace kdhost
