#include "host/upgrader_releases.h"

#include <algorithm>
#include <map>

namespace kdhost {

namespace {

enum Part : size_t { kCore = 0, kSession = 1, kWorkflow = 2, kMobile = 3 };

const std::map<std::string, UpgraderRelease>& Upgraders() {
    static const std::map<std::string, UpgraderRelease> upgraders = {
        {"KDVqUpgrader830", {kCore, 1206}},      {"KDVqUpgrader832", {kCore, 1601}},
        {"KDVqUpgrader833", {kCore, 1926}},      {"KDVqUpgrader901sp1", {kCore, 2703}},
        {"KDVqUpgrader902", {kCore, 2860}},      {"KDVqUpgrader912", {kCore, 3354}},
        {"KDVqUpgrader920", {kCore, 4039}},      {"KDVqUpgrader93rev2", {kCore, 4866}},
        {"KDUpgradeSM830", {kSession, 1206}},    {"KDUpgraderSM833", {kSession, 1601}},
        {"KDUpgraderSM902", {kSession, 2769}},   {"KDUpgradeSM912", {kSession, 3324}},
        {"KDUpgradeSM921", {kSession, 4511}},    {"KDUpgradeSM93rev2", {kSession, 4866}},
        {"KDUpgradeWFM830", {kWorkflow, 1206}},  {"KDUpgradeWFM832", {kWorkflow, 1601}},
        {"KDUpgradeWFM833", {kWorkflow, 2408}},  {"KDUpgradeWFM901sp1", {kWorkflow, 2710}},
        {"KDUpgradeWFM902", {kWorkflow, 2810}},  {"kdUpgradeWFM93rev2", {kWorkflow, 5085}},
        {"kdUpgradeWFM931", {kWorkflow, 5645}},  {"KDUpgradeMobile832", {kMobile, 1601}},
        {"KDUpgradeMobile901", {kMobile, 2408}}, {"KDUpgradeMobile902", {kMobile, 2756}},
        {"KDUpgradeMobile91SP1", {kMobile, 3035}}, {"KDUpgradeMobile93rev2", {kMobile, 5129}},
    };
    return upgraders;
}

}  // namespace

std::optional<UpgraderRelease> ReleaseOfUpgrader(const std::string& className) {
    auto found = Upgraders().find(className);
    if (found == Upgraders().end()) return std::nullopt;
    return found->second;
}

RepositoryVersions NewestKnownVersions() {
    RepositoryVersions newest{};
    for (const auto& entry : Upgraders()) {
        newest[entry.second.part] = std::max(newest[entry.second.part], entry.second.version);
    }
    return newest;
}

std::string DescribeNewerParts(const RepositoryVersions& versions) {
    RepositoryVersions newest = NewestKnownVersions();
    std::string text;
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) {
        if (versions[i] <= newest[i]) continue;
        text += (text.empty() ? "" : ", ") + std::string(kRepositoryParts[i].name) + " " +
                std::to_string(versions[i]) + " above " + std::to_string(newest[i]);
    }
    return text;
}

const std::vector<Release>& UpgradedReleases() {
    // Each part at the number of the last of its upgraders that belongs to
    // the release or an earlier one.
    static const std::vector<Release> releases = {
        {"8.3.0", {1206, 1206, 1206, 0}},
        {"8.3.3", {1926, 1601, 2408, 1601}},
        {"9.0.1 SP1", {2703, 1601, 2710, 2408}},
        {"9.0.2", {2860, 2769, 2810, 2756}},
        {"9.2.0", {4039, 3324, 2810, 3035}},
        {"9.3 rev2", {4866, 4866, 5085, 5129}},
    };
    return releases;
}

}  // namespace kdhost
