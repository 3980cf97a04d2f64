#include "host/status_report.h"

#include <optional>

#include "host/final_upgraders.h"
#include "host/upgrader_releases.h"

namespace kdhost {

namespace {

// "core to 1206 (8.3.0)" for an upgrader that moves a version.
std::string WhatItWrites(const std::string& className) {
    std::optional<UpgraderRelease> own = ReleaseOfUpgrader(className);
    if (!own) return "";
    return std::string(kRepositoryParts[own->part].name) + " to " + std::to_string(own->version) + " (" +
           own->release + ")";
}

std::string NameList(const std::vector<EnabledAnswer>& answers) {
    std::string text;
    for (const EnabledAnswer& answer : answers) text += (text.empty() ? "" : ", ") + answer.className;
    return text;
}

}  // namespace

StatusSummary SummariseStatus(const std::vector<EnabledAnswer>& answers) {
    StatusSummary summary;
    for (const EnabledAnswer& answer : answers) {
        if (!answer.error.empty()) {
            summary.failed.push_back(answer);
        } else if (answer.enabled) {
            (RunsAfterChains(answer.className) ? summary.alwaysRun : summary.pending).push_back(answer);
        }
    }
    return summary;
}

std::string StatusText(const std::string& target, const RepositoryVersions& versions,
                       const std::vector<EnabledAnswer>& answers) {
    std::string text = "Repository " + target + "\nVersions: " + DescribeVersionsWithReleases(versions) + "\n";
    std::string newer = DescribeNewerParts(versions);
    if (!newer.empty()) text += "Newer than this kdvq-upgrade knows: " + newer + "; upgrade refuses it\n";
    StatusSummary summary = SummariseStatus(answers);
    if (summary.UpToDate()) {
        text += "Up to date: no upgrader moves a version of this repository.\n";
    } else if (!summary.pending.empty()) {
        size_t count = summary.pending.size();
        text += "Pending: " + std::to_string(count) + (count == 1 ? " upgrader applies" : " upgraders apply") +
                " now (more may follow as the versions rise):\n";
        for (const EnabledAnswer& answer : summary.pending) {
            text += "  " + answer.className + ": " + WhatItWrites(answer.className) + "\n";
        }
    }
    if (!summary.failed.empty()) {
        text += "Not known whether they apply (their Enabled test failed):\n";
        for (const EnabledAnswer& answer : summary.failed) text += "  " + answer.className + ": " + answer.error + "\n";
    }
    if (!summary.alwaysRun.empty()) {
        text += "Run after the others (table indices, system-table marking):\n  " +
                NameList(summary.alwaysRun) + "\n";
        if (summary.UpToDate()) {
            text +=
                "  on an up-to-date repository only when they would change something, or with upgrade --refresh\n";
        }
    }
    return text;
}

}  // namespace kdhost
