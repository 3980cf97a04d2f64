// sample: creates a sample repository of an old release in a new SQLite
// file, to try an upgrade on.
#include <cstdio>
#include <memory>
#include <string>

#include "host/bad_input.h"
#include "host/commands.h"
#include "host/release_samples.h"
#include "host/sample_repository.h"
#include "host/sample_scale.h"

namespace kdhost {

namespace {

struct SampleOptions {
    std::string release;
    std::string db;
    CLI::Option* scaleOption = nullptr;  // whether --scale was given
    double scale = 1;
};

}  // namespace

Command AddSampleCommand(CLI::App& app) {
    auto options = std::make_shared<SampleOptions>();
    CLI::App* sub = app.add_subcommand("sample", "Create a sample repository of an old release in a new SQLite file");
    sub->add_option("--release", options->release, "The release the sample comes from")
        ->required()
        ->check(CLI::IsMember(KnownSampleReleases()));
    sub->add_option("--db", options->db, "The SQLite file to create (it must not exist)")
        ->required()
        ->type_name("PATH");
    options->scaleOption =
        sub->add_option("--scale", options->scale,
                        "Grow the 8.2 sample to a large repository: 1 is about 20,000 transitions and 200,000 "
                        "history rows, and every count grows with the scale (0.1 for a quick run)")
            ->type_name("S");
    return {sub, [options] {
                if (options->scaleOption->count() > 0)
                    CreateScaledSample(options->release, options->db, options->scale);
                else
                    CreateReleaseSample(options->release, options->db);
                std::printf("Created a sample repository of release %s in %s\n", options->release.c_str(),
                            options->db.c_str());
                return static_cast<int>(kExitSuccess);
            }};
}

}  // namespace kdhost
