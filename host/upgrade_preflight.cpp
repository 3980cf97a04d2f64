#include "host/upgrade_preflight.h"

#include "host/bad_input.h"
#include "host/database_id_answer.h"
#include "host/database_id_need.h"
#include "host/input_checks.h"
#include "host/log_file_check.h"
#include "host/odbc_database_file_check.h"
#include "host/repository_backup.h"
#include "host/repository_check.h"
#include "host/repository_connection.h"
#include "host/repository_versions.h"
#include "host/upgrader_releases.h"
#include "platform/automation/basic_error.h"

namespace kdhost {

namespace {

// The repository file (or, through ODBC, the one a SQLite driver would
// make) and the log file; then the file's database, read-only.
void CheckFiles(const Target& target, const std::string& prefix, const std::string& logPath,
                bool changesRepository) {
    if (target.IsFile()) {
        CheckRepositoryFile(target.path);
        if (changesRepository) CheckRepositoryFileWritable(target.path);
    } else {
        CheckOdbcDatabaseFile(target);
    }
    if (!logPath.empty()) CheckLogFile(logPath);
    if (target.IsFile()) CheckRepositoryDatabase(target.path, prefix);
}

// What the repository holds: a version beyond the newest known, and the
// identifier an upgrader will ask for.
std::optional<std::string> CheckRepositoryContents(const UpgradeRequest& request) {
    com::ComPtr<ado::Connection> connection = OpenRepositoryForChecks(request.target, request.prefix);
    std::vector<std::string> asking;
    try {
        RepositoryVersions versions = ReadVersions(connection.Get(), request.prefix);
        std::string newer = DescribeNewerParts(versions);
        if (!newer.empty()) {
            throw BadInput(request.target.text + ": newer than this kdvq-upgrade knows (" + newer +
                           "); upgrade it with the kdvq-upgrade of its release or a later one");
        }
        bool given = request.databaseId && !request.databaseId->empty();
        if (!given) asking = UpgradersThatAskForDatabaseId(connection.Get(), request.prefix, versions);
    } catch (const automation::BasicError& e) {
        throw BadInput(request.target.text + ": cannot be read: " + request.target.Shown(e.Description()));
    }
    connection->Close();
    if (asking.empty()) return request.databaseId;
    return AskForDatabaseIdNow(request.target, asking);
}

}  // namespace

std::optional<std::string> CheckUpgradeRequest(const UpgradeRequest& request) {
    if (request.databaseId) CheckDatabaseIdOption(*request.databaseId);
    CheckQuotedSettings(request.settings);
    CheckTablePrefix(request.prefix);
    if (request.backup) CheckBackupPossible(request.target);
    CheckFiles(request.target, request.prefix, request.logPath, request.changesRepository);
    return CheckRepositoryContents(request);
}

void CheckStatusRequest(const Target& target, const std::string& prefix, const std::string& logPath) {
    CheckTablePrefix(prefix);
    CheckFiles(target, prefix, logPath, false);
}

}  // namespace kdhost
