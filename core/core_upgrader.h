#pragma once
// What the upgraders of the core repository tables have in common: a
// release with its Name/Description resources, the version range it is
// enabled for (from <= version < to), the number it writes into
// KD_VQ_DB_VERSION on success, and the version Enabled was last given.
#include <cstdint>
#include <limits>
#include <string>

#include "framework/upgrader_base.h"

namespace kdvq {

struct CoreRelease {
    int32_t nameId;
    int32_t descriptionId;
    int32_t from;  // lowest version the upgrader applies to
    int32_t to;    // the version it writes, also the exclusive upper bound
};

// The lower bound of an upgrader that applies to every older repository.
constexpr int32_t kAnyOlderVersion = std::numeric_limits<int32_t>::min();

class CoreUpgrader : public UpgraderBase {
protected:
    CoreUpgrader(std::string className, std::string tagName, CoreRelease release)
        : UpgraderBase(std::move(className), std::move(tagName)), release_(release) {}

    bool IsEnabledFor(int32_t version) override {
        keptVersion_ = version;
        return version >= release_.from && version < release_.to;
    }
    int32_t NameId() const override { return release_.nameId; }
    int32_t DescriptionId() const override { return release_.descriptionId; }
    std::string VersionTable() const override { return "KD_VQ_DB_VERSION"; }
    int32_t NewVersion() const override { return release_.to; }

    // The repository version of the latest Enabled call.
    int32_t KeptVersion() const { return keptVersion_; }

    // A column that a release adds to a table of bare name, and the text
    // announcing it.
    struct NewColumn {
        const char* table;
        const char* column;
        const char* sql;
        const char* progress;
    };
    // Adds the column when it is missing (that statement's result replaces
    // ok), then, when ok, fills it: fill's result replaces ok too. A failure
    // of an earlier step is thereby forgotten once this one succeeds, which
    // is how these releases have always decided their outcome.
    template <class Fill>
    void AddColumnThenFill(bool& ok, const NewColumn& c, Fill&& fill) {
        if (!ColumnExists(connection_.Get(), c.table, c.column)) ok = Run(c.sql, c.progress);
        if (ok) ok = fill();
    }

private:
    CoreRelease release_;
    int32_t keptVersion_ = 0;
};

}  // namespace kdvq
