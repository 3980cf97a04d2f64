// The per-thread cache of supported extensions.
#include <gtest/gtest.h>

#include <thread>

#include "framework/mod_main.h"
#include "tests/support/test_host.h"

namespace kdvq {
namespace {

class SupportedExtensions : public ::testing::Test {
protected:
    void SetUp() override {
        connection_ = testing::OpenSqlite(dir_.File("repo.db"));
        testing::ExecAll(connection_.Get(),
                         "CREATE TABLE KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128), ID INTEGER);\n"
                         "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDSessionManager', 1)");
    }
    bool Verify(const std::string& extension) {
        return VerifySupportedExtension(connection_.Get(), "", extension);
    }

    testing::TestHost host_;
    testing::TempDir dir_;
    com::ComPtr<ado::Connection> connection_;
};

TEST_F(SupportedExtensions, MatchRegardlessOfCase) {
    const std::vector<std::pair<std::string, bool>> cases = {
        {"KDSessionManager", true},  {"kdsessionmanager", true}, {"KDSESSIONMANAGER", true},
        {"KDWorkflowManager", false}, {"KDSessionManager ", false}, {"", false},
    };
    for (const auto& [extension, supported] : cases) {
        SCOPED_TRACE(extension);
        EXPECT_EQ(Verify(extension), supported);
    }
}

TEST_F(SupportedExtensions, AreReadOncePerThread) {
    EXPECT_FALSE(Verify("KDWorkflowManager"));
    testing::ExecAll(connection_.Get(), "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDWorkflowManager', 2)");
    EXPECT_FALSE(Verify("KDWorkflowManager"));

    bool seenOnNewThread = false;
    std::thread([&] { seenOnNewThread = Verify("KDWorkflowManager"); }).join();
    EXPECT_TRUE(seenOnNewThread);
    EXPECT_FALSE(Verify("KDWorkflowManager"));
}

}  // namespace
}  // namespace kdvq
