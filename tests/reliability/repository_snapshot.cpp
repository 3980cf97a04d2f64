#include "tests/reliability/repository_snapshot.h"

#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>

namespace kdhost::testing {

namespace {

using Row = std::vector<std::string>;

std::string Upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// Every row of a query, each value as text ("NULL" for a null).
std::vector<Row> Query(sqlite3* db, const std::string& sql) {
    std::vector<Row> rows;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        return {{"error: " + std::string(sqlite3_errmsg(db))}};
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
        Row row;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const unsigned char* value = sqlite3_column_text(statement, i);
            row.push_back(value ? reinterpret_cast<const char*>(value) : "NULL");
        }
        rows.push_back(row);
    }
    sqlite3_finalize(statement);
    return rows;
}

std::string Join(const Row& row, const char* separator) {
    std::string text;
    for (size_t i = 0; i < row.size(); ++i) text += (i ? separator : "") + row[i];
    return text;
}

std::string Quoted(const std::string& name) { return "\"" + name + "\""; }

void WithDatabase(const std::string& path, const std::function<void(sqlite3*)>& use) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) use(db);
    sqlite3_close(db);
}

}  // namespace

Snapshot TakeSnapshot(const std::string& path) {
    Snapshot snapshot;
    WithDatabase(path, [&](sqlite3* db) {
        for (const Row& table : Query(db, "SELECT name FROM sqlite_master WHERE type='table' "
                                          "AND name NOT LIKE 'sqlite_%'")) {
            // Columns by name: a second run adds a column the first could
            // not later than the others, which changes nothing that matters.
            std::string name = Upper(table[0]);
            Row names;
            for (const Row& column : Query(db, "SELECT upper(name), upper(type), \"notnull\", pk FROM "
                                               "pragma_table_info('" + table[0] + "') ORDER BY upper(name)")) {
                snapshot.tables[name].push_back(Join(column, " "));
                names.push_back(Quoted(column[0]));
            }
            std::vector<std::string>& rows = snapshot.rows[name];
            for (const Row& row : Query(db, "SELECT " + Join(names, ",") + " FROM " + Quoted(table[0]))) {
                rows.push_back(Join(row, "|"));
            }
            std::sort(rows.begin(), rows.end());
        }
        for (const Row& index : Query(db, "SELECT upper(name), upper(tbl_name) FROM sqlite_master "
                                          "WHERE type='index' AND sql IS NOT NULL")) {
            Row columns;
            for (const Row& column : Query(db, "SELECT upper(name) FROM pragma_index_info('" + index[0] + "')")) {
                columns.push_back(column[0]);
            }
            snapshot.indexes[index[0]] = index[1] + "(" + Join(columns, ",") + ")";
        }
    });
    return snapshot;
}

std::string IntegrityCheck(const std::string& path) {
    std::string answer = "cannot be opened";
    WithDatabase(path, [&](sqlite3* db) {
        Row lines;
        for (const Row& row : Query(db, "PRAGMA integrity_check")) lines.push_back(row[0]);
        answer = Join(lines, "\n");
    });
    return answer;
}

void CopyDatabase(const std::string& from, const std::string& to) {
    namespace fs = std::filesystem;
    for (const char* suffix : {"", "-wal", "-shm"}) {
        fs::remove(to + suffix);
        if (fs::exists(from + suffix)) fs::copy_file(from + suffix, to + suffix);
    }
}

std::string VersionsText(const std::string& path) {
    std::string text;
    WithDatabase(path, [&](sqlite3* db) {
        const char* parts[][2] = {{"core", "KD_VQ_DB_VERSION"},
                                  {"session", "KD_SESSION_DB_VERSION"},
                                  {"workflow", "KD_WMS_DB_VERSION"},
                                  {"mobile", "KD_MOBILE_DB_VERSION"}};
        for (const auto& part : parts) {
            std::vector<Row> rows = Query(db, std::string("SELECT VERSION FROM ") + part[1]);
            std::string version = rows.empty() || rows[0][0].rfind("error", 0) == 0 ? "0" : rows[0][0];
            text += (text.empty() ? "" : ", ") + std::string(part[0]) + " " + version;
        }
    });
    return text;
}

std::string Differences(const Snapshot& snapshot, const Snapshot& reference) {
    std::set<std::string> names = Differing(snapshot.rows, reference.rows);
    for (const std::string& table : Differing(snapshot.tables, reference.tables)) names.insert(table);
    if (snapshot.indexes != reference.indexes) names.insert("indexes");
    return Names(names);
}

}  // namespace kdhost::testing
