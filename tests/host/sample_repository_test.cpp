// The sample of release 8.2 is a repository the runner accepts, with the
// versions of that release.
#include <string>

#include <gtest/gtest.h>

#include "host/repository_check.h"
#include "host/repository_versions.h"
#include "host/sample_repository.h"
#include "tests/support/test_host.h"

namespace kdhost::testing {
namespace {

TEST(SampleRepository, IsARepositoryOfRelease82WithExtensionsNotYetVersioned) {
    kdvq::testing::TempDir folder;
    std::string path = folder.File("sample.db");
    CreateSampleRepository("8.2", path);
    EXPECT_NO_THROW(CheckRepositoryFile(path));
    EXPECT_NO_THROW(CheckRepositoryDatabase(path, "", true));
    com::ComPtr<ado::Connection> connection = kdvq::testing::OpenSqlite(path);
    EXPECT_EQ(ReadVersions(connection.Get(), ""), (RepositoryVersions{1100, 0, 0, 0}));
    EXPECT_EQ(DescribeVersions(ReadVersions(connection.Get(), "")), "core 1100, session 0, workflow 0, mobile 0");
}

}  // namespace
}  // namespace kdhost::testing
