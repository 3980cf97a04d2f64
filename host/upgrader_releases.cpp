#include "host/upgrader_releases.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace kdhost {

namespace {

enum Part : size_t { kCore = 0, kSession = 1, kWorkflow = 2, kMobile = 3 };

const std::map<std::string, UpgraderRelease>& Upgraders() {
    static const std::map<std::string, UpgraderRelease> upgraders = {
        {"KDVqUpgrader830", {kCore, 1206, "8.3.0"}},      {"KDVqUpgrader832", {kCore, 1601, "8.3.2"}},
        {"KDVqUpgrader833", {kCore, 1926, "8.3.3"}},      {"KDVqUpgrader901sp1", {kCore, 2703, "9.0.1 SP1"}},
        {"KDVqUpgrader902", {kCore, 2860, "9.0.2"}},      {"KDVqUpgrader912", {kCore, 3354, "9.1.2"}},
        {"KDVqUpgrader920", {kCore, 4039, "9.2.0"}},      {"KDVqUpgrader93rev2", {kCore, 4866, "9.3 rev2"}},
        {"KDUpgradeSM830", {kSession, 1206, "8.3.0"}},    {"KDUpgraderSM833", {kSession, 1601, "8.3.3"}},
        {"KDUpgraderSM902", {kSession, 2769, "9.0.2"}},   {"KDUpgradeSM912", {kSession, 3324, "9.1.2"}},
        {"KDUpgradeSM921", {kSession, 4511, "9.2.1"}},    {"KDUpgradeSM93rev2", {kSession, 4866, "9.3 rev2"}},
        {"KDUpgradeWFM830", {kWorkflow, 1206, "8.3.0"}},  {"KDUpgradeWFM832", {kWorkflow, 1601, "8.3.2"}},
        {"KDUpgradeWFM833", {kWorkflow, 2408, "8.3.3"}},  {"KDUpgradeWFM901sp1", {kWorkflow, 2710, "9.0.1 SP1"}},
        {"KDUpgradeWFM902", {kWorkflow, 2810, "9.0.2"}},  {"kdUpgradeWFM93rev2", {kWorkflow, 5085, "9.3 rev2"}},
        {"kdUpgradeWFM931", {kWorkflow, 5645, "9.3.1"}},  {"KDUpgradeMobile832", {kMobile, 1601, "8.3.2"}},
        {"KDUpgradeMobile901", {kMobile, 2408, "9.0.1"}}, {"KDUpgradeMobile902", {kMobile, 2756, "9.0.2"}},
        {"KDUpgradeMobile91SP1", {kMobile, 3035, "9.1 SP1"}}, {"KDUpgradeMobile93rev2", {kMobile, 5129, "9.3 rev2"}},
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

std::string ReleaseOfVersion(size_t part, int32_t version) {
    if (version == 0) return "absent";
    // The part's releases by the number they write, lowest first.
    std::map<int32_t, std::string> written;
    for (const auto& entry : Upgraders()) {
        if (entry.second.part == part) written[entry.second.version] = entry.second.release;
    }
    auto exact = written.find(version);
    if (exact != written.end()) return exact->second;
    auto above = written.upper_bound(version);
    if (above == written.begin()) return "before " + above->second;
    if (above == written.end()) return "newer than " + written.rbegin()->second;
    return "after " + std::prev(above)->second;
}

std::string DescribeVersionsWithReleases(const RepositoryVersions& versions) {
    std::string text;
    for (size_t i = 0; i < kRepositoryParts.size(); ++i) {
        text += (i == 0 ? "" : ", ") + std::string(kRepositoryParts[i].name) + " " + std::to_string(versions[i]) +
                " (" + ReleaseOfVersion(i, versions[i]) + ")";
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
