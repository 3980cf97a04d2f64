#pragma once
// Helper indices: indices the SQLite provider makes by itself where the
// engine left to itself would scan a large table again and again.
//
// After each statement the provider reads the engine's counters of it:
// the rows it stepped through in full-table scans and the rows it put into
// automatic indices (built for that one run and thrown away). A statement
// whose run stepped through or indexed at least kLargeTable rows is
// costly. When statements of one shape (the text with its literals taken
// out) have been costly kCostlyRuns times, the engine's query plan for the
// latest of them says what an index would serve: a full scan of a table,
// whose columns compared for equality the statement's conditions give, or
// the columns of an automatic index. One helper index is made per such
// table, and kept only when the engine's plan then uses it.
//
// Helper indices carry a reserved name prefix and never change an
// outcome: a statement that changes a table's definition first has that
// table's helper indices dropped (the engine refuses to drop an indexed
// column, and a table rebuild must make again only the repository's own
// indices), and the runner drops them all before it ends and any an
// interrupted run left before its first upgrader.
#include <sqlite3.h>

#include <map>
#include <string>
#include <vector>

namespace ado::sqlite {

// Every helper index's name starts with this.
constexpr const char* kHelperIndexPrefix = "kdvq_helper_";
// A run stepping through or indexing this many rows is costly.
constexpr int kLargeTable = 1000;
// A shape is helped once this many of its runs were costly.
constexpr int kCostlyRuns = 2;

bool IsHelperIndexName(const std::string& name);
// Whether a statement is the provider's own work on helper indices (its
// plan reads, catalog reads, index creation and removal), for a replay that
// leaves the engine to itself.
bool IsHelperIndexWork(const std::string& sql);

class HelperIndexes {
public:
    explicit HelperIndexes(sqlite3* db) : db_(db) {}

    // Off until asked for.
    void SetEnabled(bool enabled) { enabled_ = enabled; }

    // A statement has run (to its end or to its reset): its counters are
    // read and cleared, and its shape may be helped.
    void AfterRun(sqlite3_stmt* statement);
    // Before a text runs: when it changes table definitions, the helper
    // indices of every table it names are dropped.
    void BeforeRun(const std::string& sql);

private:
    struct ShapeRuns {
        int costly = 0;
        bool settled = false;  // helped, or found beyond help
    };

    void Help(const std::string& sql);
    void Create(const std::string& table, const std::vector<std::string>& columns, const std::string& sql);
    void DropOn(const std::vector<std::string>& tables);

    sqlite3* db_;
    bool enabled_ = false;
    std::map<std::string, ShapeRuns> shapes_;  // costly shapes only
};

// Drops every helper index in the database (made by this process or left
// by an interrupted one), in a transaction of its own unless one is open;
// answers how many there were. Raises ProviderError.
int DropHelperIndexes(sqlite3* db);
int CountHelperIndexes(sqlite3* db);

}  // namespace ado::sqlite
