// sample: creates a sample repository of an old release in a new SQLite
// file, to try an upgrade on.
#include <cstdio>
#include <memory>
#include <string>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/sample_repository.h"

namespace kdhost {

namespace {

struct SampleOptions {
    std::string release;
    std::string db;
};

}  // namespace

Command AddSampleCommand(CLI::App& app) {
    auto options = std::make_shared<SampleOptions>();
    CLI::App* sub = app.add_subcommand("sample", "Create a sample repository of an old release in a new SQLite file");
    sub->add_option("--release", options->release, "The release the sample comes from")
        ->required()
        ->check(CLI::IsMember(SampleReleases()));
    sub->add_option("--db", options->db, "The SQLite file to create (it must not exist)")
        ->required()
        ->type_name("PATH");
    return {sub, [options] {
                CreateSampleRepository(options->release, options->db);
                std::printf("Created a sample repository of release %s in %s\n", options->release.c_str(),
                            options->db.c_str());
                return static_cast<int>(kExitSuccess);
            }};
}

}  // namespace kdhost
