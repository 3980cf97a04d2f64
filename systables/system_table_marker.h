#pragma once
// The upgraders that only hand the host a list of tables to mark as the
// framework's system tables. They run no statements and write no version:
// Enabled requires a host component to be installed (and, for some, an
// extension to be supported); Execute merely succeeds.
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "framework/upgrader_base.h"

namespace kdvq {

// Whether the host's probe component can be created; any failure of the
// creation counts as not installed.
bool HostProbeComponentInstalled();

class SystemTableMarker : public UpgraderBase {
protected:
    // extension: the supported extension Enabled requires, empty for none.
    // tables: the bare table names in the order they are handed out.
    SystemTableMarker(std::string className, std::string tagName, int32_t nameId, int32_t descriptionId,
                      std::string extension, std::vector<std::string> tables);

    bool OnEnabled(IKDLogin* login, int32_t& version) override;
    int32_t NameId() const override { return nameId_; }
    int32_t DescriptionId() const override { return descriptionId_; }
    // A new collection on every call.
    Variant OnTavixSystemTables() override;
    // Nothing runs, so the callback is not kept.
    bool OnExecute() override {
        callback_ = nullptr;
        return true;
    }

private:
    // The login's connection and prefix stay local: these classes keep no
    // repository state.
    bool ExtensionSupported(IKDLogin* login) const;

    int32_t nameId_;
    int32_t descriptionId_;
    std::string extension_;
    std::vector<std::string> tables_;
};

}  // namespace kdvq
