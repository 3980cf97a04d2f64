#pragma once
// Helpers shared by the data-access tests.
#include <functional>
#include <string>
#include <vector>

#include "platform/ado/ado.h"
#include "platform/automation/basic_error.h"

namespace ado_test {

// The Err.Number a call raises; 0 when it succeeds.
inline int32_t ErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const automation::BasicError& e) {
        return e.Number();
    }
    return 0;
}

// "number|native|state|description|source" of every Errors entry.
inline std::vector<std::string> DescribeErrors(const ado::Connection& connection) {
    std::vector<std::string> lines;
    const ado::Errors& errors = connection.GetErrors();
    for (int32_t i = 0; i < errors.Count(); ++i) {
        const ado::Error& e = errors.Item(i);
        lines.push_back(std::to_string(e.number) + "|" + std::to_string(e.nativeError) + "|" + e.sqlState + "|" +
                        e.description + "|" + e.source);
    }
    return lines;
}

// Client-side keyset optimistic, as edit recordsets are opened.
inline com::ComPtr<ado::Recordset> OpenEditable(ado::Connection* connection, const std::string& sql) {
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    rs->SetCursorLocation(ado::adUseClient);
    rs->Open(sql, connection, ado::adOpenKeyset, ado::adLockOptimistic);
    return rs;
}

// Server-side forward-only read-only, as read recordsets are opened.
inline com::ComPtr<ado::Recordset> OpenStream(ado::Connection* connection, const std::string& sql) {
    com::ComPtr<ado::Recordset> rs = ado::NewRecordset();
    rs->SetCursorLocation(ado::adUseServer);
    rs->Open(sql, connection, ado::adOpenForwardOnly, ado::adLockReadOnly);
    return rs;
}

}  // namespace ado_test
