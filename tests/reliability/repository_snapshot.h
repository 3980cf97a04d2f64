#pragma once
// What the reliability tests compare of a SQLite repository: its catalog,
// normalised (tables with their columns' types, NOT NULL and key flags,
// and indexes with their columns), and the rows of every table, each row
// one text, sorted (the upgraders promise no row order).
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kdhost::testing {

// Table name (upper case) -> column lines "NAME TYPE notnull pk", by name.
using Catalog = std::map<std::string, std::vector<std::string>>;
// Table name (upper case) -> sorted row texts.
using Contents = std::map<std::string, std::vector<std::string>>;

struct Snapshot {
    Catalog tables;
    std::map<std::string, std::string> indexes;  // index name -> "TABLE(COL,...)"
    Contents rows;
};

Snapshot TakeSnapshot(const std::string& path);

// The names of the entries of two maps that differ.
template <class Map>
std::set<std::string> Differing(const Map& left, const Map& right) {
    std::set<std::string> names;
    for (const auto& entry : left) {
        auto other = right.find(entry.first);
        if (other == right.end() || !(other->second == entry.second)) names.insert(entry.first);
    }
    for (const auto& entry : right) {
        if (left.count(entry.first) == 0) names.insert(entry.first);
    }
    return names;
}

// The names joined by ","; "-" when there are none.
inline std::string Names(const std::set<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
    return text.empty() ? "-" : text;
}

// The tables whose definition or rows differ between two snapshots, and
// "indexes" when the indexes do, joined by ","; "-" when they are equal.
// Rows compare as multisets: a doubled row differs as a lost one does.
std::string Differences(const Snapshot& snapshot, const Snapshot& reference);

// The answer of PRAGMA integrity_check, lines joined by "\n".
std::string IntegrityCheck(const std::string& path);

// Copies a closed database file (and its write-ahead log, when present).
void CopyDatabase(const std::string& from, const std::string& to);

// The versions as the upgrade reports them, read straight from the file.
std::string VersionsText(const std::string& path);

}  // namespace kdhost::testing
