#pragma once
// A model of a repository behind the scripted provider: the tables that
// exist with their columns and rows. It answers the existence and version
// queries the upgraders send ("SELECT * FROM T", "select C from T") from
// the model, and applies the effect of the statements they run (create,
// alter, drop, insert into and update of a version), so that a later query
// sees what an earlier step did: a table or column appears after its CREATE
// or ALTER and is gone after its DROP. Queries of other shapes fall through
// to the provider's own rules.
#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "platform/ado/scripted/scripted_provider.h"
#include "platform/automation/text_case.h"

namespace kdvq::testing {

class ScriptedRepository {
public:
    // owner: a table prefix that names the same schema as bare names do
    // ("ARC." and no prefix reach the same tables).
    explicit ScriptedRepository(ado::ScriptedProvider* provider, std::string owner = "")
        : state_(std::make_shared<State>()) {
        state_->owner = Upper(owner);
        provider->SetHandler([state = state_](const std::string& kind, const std::string& sql) {
            return kind == "EXEC" ? state->Execute(sql) : state->Open(sql);
        });
    }

    // A table with its columns and rows.
    ScriptedRepository& Table(const std::string& name, std::vector<std::string> columns,
                              std::vector<std::vector<automation::Variant>> rows = {}) {
        state_->tables[state_->Key(name)] = ado::ScriptedRows{std::move(columns), std::move(rows)};
        return *this;
    }
    // A one-row version table.
    ScriptedRepository& Version(const std::string& table, int32_t version) {
        return Table(table, {"VERSION"}, {{automation::Variant(version)}});
    }
    // The statement fails with these native errors and has no effect.
    ScriptedRepository& Fail(const std::string& sql, std::vector<int32_t> nativeErrors) {
        state_->failures[sql] = std::move(nativeErrors);
        return *this;
    }

private:
    static std::string Upper(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
        return text;
    }

    struct State {
        std::map<std::string, ado::ScriptedRows> tables;
        std::map<std::string, std::vector<int32_t>> failures;
        std::string owner;

        std::string Key(const std::string& name) const {
            std::string key = Upper(name);
            if (!owner.empty() && key.compare(0, owner.size(), owner) == 0) key.erase(0, owner.size());
            return key;
        }
        ado::ScriptedRows* Find(const std::string& name) {
            auto it = tables.find(Key(name));
            return it == tables.end() ? nullptr : &it->second;
        }
        static int ColumnIndex(const ado::ScriptedRows& t, const std::string& column) {
            for (size_t i = 0; i < t.columns.size(); ++i)
                if (automation::SameTextIgnoringCase(t.columns[i], column)) return static_cast<int>(i);
            return -1;
        }

        std::optional<ado::ScriptedAnswer> Open(const std::string& sql) {
            static const std::regex all(R"(SELECT \* FROM (\S+))", std::regex::icase);
            static const std::regex one(R"(select (\w+) from (\S+))", std::regex::icase);
            std::smatch m;
            if (std::regex_match(sql, m, all)) {
                ado::ScriptedRows* t = Find(m[1]);
                return t ? std::optional(ado::ScriptedAnswer{{}, "", *t}) : Missing();
            }
            if (std::regex_match(sql, m, one)) {
                ado::ScriptedRows* t = Find(m[2]);
                int index = t ? ColumnIndex(*t, m[1]) : -1;
                if (index < 0) return Missing();
                ado::ScriptedRows projected{{t->columns[index]}, {}};
                for (const auto& row : t->rows) projected.rows.push_back({row[index]});
                return ado::ScriptedAnswer{{}, "", projected};
            }
            return std::nullopt;
        }
        static std::optional<ado::ScriptedAnswer> Missing() {
            return ado::ScriptedAnswer{{942}, "table or view does not exist", {}};
        }

        std::optional<ado::ScriptedAnswer> Execute(const std::string& sql) {
            auto failure = failures.find(sql);
            if (failure != failures.end()) return ado::ScriptedAnswer{failure->second, "scripted failure", {}};
            Apply(sql);
            return std::nullopt;
        }

        void Apply(const std::string& sql) {
            static const std::regex create(R"(create table (\S+) ?\((.*)\))", std::regex::icase);
            static const std::regex insertValue(R"(insert into (\S+) values \((-?\d+)\))", std::regex::icase);
            static const std::regex addColumn(R"(alter table (\S+) add (\w+) .*)", std::regex::icase);
            static const std::regex dropTable(R"(drop table (\S+)( cascade constraints)?)", std::regex::icase);
            static const std::regex setVersion(R"(update (\S+) set VERSION = (-?\d+))", std::regex::icase);
            std::smatch m;
            if (std::regex_match(sql, m, create)) {
                ado::ScriptedRows t;
                std::string defs = m[2];
                static const std::regex column(R"((?:^|,)\s*(\w+))");
                for (auto it = std::sregex_iterator(defs.begin(), defs.end(), column); it != std::sregex_iterator(); ++it)
                    t.columns.push_back((*it)[1]);
                tables[Key(m[1])] = t;
            } else if (std::regex_match(sql, m, insertValue)) {
                if (ado::ScriptedRows* t = Find(m[1])) t->rows.push_back({automation::Variant(std::stoi(m[2]))});
            } else if (std::regex_match(sql, m, addColumn)) {
                if (ado::ScriptedRows* t = Find(m[1])) {
                    t->columns.push_back(m[2]);
                    for (auto& row : t->rows) row.push_back(automation::Variant::Null());
                }
            } else if (std::regex_match(sql, m, dropTable)) {
                tables.erase(Key(m[1]));
            } else if (std::regex_match(sql, m, setVersion)) {
                if (ado::ScriptedRows* t = Find(m[1]))
                    for (auto& row : t->rows) row[0] = automation::Variant(std::stoi(m[2]));
            }
        }
    };

    std::shared_ptr<State> state_;
};

}  // namespace kdvq::testing
