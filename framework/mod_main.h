#pragma once
// The shared database routines every upgrader uses: statements with
// progress reporting, recordsets, existence tests, version numbers,
// supported extensions, the database identifier and primary keys.
#include <cstdint>
#include <initializer_list>
#include <string>

#include "framework/host_interfaces.h"
#include "platform/ado/ado.h"
#include "platform/automation/dictionary.h"
#include "platform/automation/variant.h"

namespace kdvq {

using RecordsetPtr = com::ComPtr<ado::Recordset>;
using ConnectionPtr = com::ComPtr<ado::Connection>;
using CallbackPtr = com::ComPtr<IKDProgressCallback>;

// ---- host services ----------------------------------------------------------
// Resource string id with substitution values (empty array when none).
std::string LoadResString(int32_t id, std::initializer_list<Variant> values = {});
// The callback's step-starting (operation 4) and step-finished (operation 3)
// operations; a failed call raises.
void StepStarting(IKDProgressCallback* callback, const std::string& text);
void StepFinished(IKDProgressCallback* callback, const std::string& text);

// Native errors that mean the change is already in place.
bool IsToleratedNativeError(int32_t nativeError);

// ---- modMain ----------------------------------------------------------------
bool DoCommand(ado::Connection* connection, const std::string& sql, const std::string& progressText,
               IKDProgressCallback* callback, bool silent);
// Server-side, forward-only, read-only. Empty sql gives null. Raises.
RecordsetPtr CreateReadOnlyRS(const std::string& sql, ado::Connection* connection);
// Client-side, keyset, optimistic. A failure gives null (swallowed).
RecordsetPtr CreateEditRS(const std::string& sql, ado::Connection* connection);
bool CheckForTables(const Variant& tables, ado::Connection* connection);
bool TableExists(const std::string& table, ado::Connection* connection);
bool SetDBVersion(ado::Connection* connection, const std::string& prefix, const std::string& table, int32_t version);
bool ColumnExists(ado::Connection* connection, const std::string& table, const std::string& column);
int32_t GetDBVersion(ado::Connection* connection, const std::string& prefix, const std::string& table);
bool VerifySupportedExtension(ado::Connection* connection, const std::string& prefix, const std::string& extension);
bool UpdateDatabaseId(const std::string& prefix, ado::Connection* connection, const std::string& table,
                      IKDProgressCallback* callback);
int32_t GetNodeTypeId(const std::string& prefix, ado::Connection* connection, const std::string& nodeTypeName);
bool AddPrimaryKeys(IKDProgressCallback* callback, ado::Connection* connection, automation::Dictionary& keys,
                    bool oracle);

// Forgets this thread's supported-extension cache. The library itself never
// calls it (the cache lives as long as the thread); a test that needs a fresh
// thread state may.
void ResetSupportedExtensionCacheForThisThread();

}  // namespace kdvq
