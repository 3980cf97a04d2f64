#include "host/repository_fingerprint.h"

#include "platform/ado/sqlite/helper_indexes.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace kdhost {

namespace {

std::string Column(ado::Recordset* rows, int32_t index) {
    automation::Variant value = rows->Fields(index).Value();
    return value.IsNull() ? "" : value.CStr();
}

}  // namespace

std::optional<std::string> RepositoryFingerprint(ado::Connection* connection) {
    if (connection->Provider() != ado::kSqliteProviderName) return std::nullopt;
    // total_changes() counts the rows every statement of this connection
    // wrote, also those whose values did not change. The provider's own
    // helper indices come and go with the statements and never stay.
    com::ComPtr<ado::Recordset> rows = ado::NewRecordset();
    rows->Open("SELECT type, name, tbl_name, sql, (SELECT total_changes()) FROM sqlite_master WHERE name NOT LIKE '" +
                   std::string(ado::sqlite::kHelperIndexPrefix) + "%' ORDER BY type, name",
               connection, ado::adOpenForwardOnly, ado::adLockReadOnly);
    std::string text;
    for (; !rows->EOF(); rows->MoveNext()) {
        for (int32_t i = 0; i < 5; ++i) text += Column(rows.Get(), i) + '\x1f';
        text += '\n';
    }
    rows->Close();
    return text;
}

}  // namespace kdhost
