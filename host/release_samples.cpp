#include "host/release_samples.h"

#include <unistd.h>

#include <cstdio>
#include <memory>

#include "host/bad_input.h"
#include "host/connection_upgrade.h"
#include "host/final_upgraders.h"
#include "host/host_session.h"
#include "host/library_registration.h"
#include "host/repository_connection.h"
#include "host/run_presenter.h"
#include "host/sample_repository.h"
#include "host/upgrader_releases.h"

namespace kdhost {

namespace {

const char kShippedRelease[] = "8.2";

const Release* FindRelease(const std::string& name) {
    for (const Release& release : UpgradedReleases()) {
        if (release.name == name) return &release;
    }
    return nullptr;
}

// The upgraders a host of the release had: those whose number does not
// pass the release's number for their part, and the ones that move no
// version.
std::vector<UpgraderClassInfo> ClassesOf(const Release& release, const std::vector<UpgraderClassInfo>& all) {
    std::vector<UpgraderClassInfo> classes;
    for (const UpgraderClassInfo& info : all) {
        std::optional<UpgraderRelease> own = ReleaseOfUpgrader(info.name);
        bool belongs = own ? own->version <= release.versions[own->part] : RunsAfterChains(info.name);
        if (belongs) classes.push_back(info);
    }
    return classes;
}

// Runs the release's upgraders on the 8.2 sample at path, without output;
// an empty text when it succeeded, else what failed.
std::string UpgradeTo(const Release& release, const std::string& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> nowhere(std::fopen("/dev/null", "w"), std::fclose);
    if (!nowhere) return "/dev/null cannot be opened";
    Console console(nowhere.get(), false);
    // No settings file: a sample is the same whoever makes it.
    HostSession host({"/dev/null", kSampleDatabaseId, std::make_shared<Settings>(), &console});
    std::vector<UpgraderClassInfo> classes = ClassesOf(release, UpgraderClasses(true));
    Target target = ParseTarget(path);
    com::ComPtr<ado::Connection> connection = OpenRepository(target, "", false);
    QuietRun quiet;
    RunResult run = UpgradeConnection(connection, "", classes, console, quiet);
    connection->Close();
    return run.Succeeded() ? "" : FailureSummary(run, "/dev/null");
}

}  // namespace

std::vector<std::string> KnownSampleReleases() {
    std::vector<std::string> releases = {kShippedRelease};
    for (const Release& release : UpgradedReleases()) releases.push_back(release.name);
    return releases;
}

void CreateReleaseSample(const std::string& release, const std::string& path) {
    const Release* upgraded = FindRelease(release);
    CreateSampleRepository(upgraded ? kShippedRelease : release, path);
    if (!upgraded) return;
    std::string failure;
    try {
        failure = UpgradeTo(*upgraded, path);
    } catch (const std::exception& e) {
        failure = e.what();
    }
    if (!failure.empty()) {
        ::unlink(path.c_str());
        throw BadInput(path + ": the sample of release " + release + " could not be made: " + failure);
    }
}

}  // namespace kdhost
