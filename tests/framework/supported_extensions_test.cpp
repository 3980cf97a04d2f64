// The per-thread cache of supported extensions. (Case is ignored in the
// match: the Enabled tests of the session and workflow parts register their
// extensions in lower case.)
#include <gtest/gtest.h>

#include <thread>

#include "framework/mod_main.h"
#include "tests/support/upgrader_run.h"

namespace kdvq::testing {
namespace {

// An extension installed after the first question is seen only on a
// thread that had not asked yet.
TEST(SupportedExtensions, AreReadOncePerThread) {
    SqliteRun repo(
        "CREATE TABLE KD_VQ_SUPPORTED_EXTENSIONS (NAME VARCHAR(128), ID INTEGER);\n"
        "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDSessionManager', 1)");
    const auto workflowSupported = [&] { return VerifySupportedExtension(repo.cn.Get(), "", "KDWorkflowManager"); };
    EXPECT_FALSE(workflowSupported());
    ExecAll(repo.cn.Get(), "INSERT INTO KD_VQ_SUPPORTED_EXTENSIONS VALUES ('KDWorkflowManager', 2)");
    EXPECT_FALSE(workflowSupported());

    bool seenOnNewThread = false;
    std::thread([&] { seenOnNewThread = workflowSupported(); }).join();
    EXPECT_TRUE(seenOnNewThread);
    EXPECT_FALSE(workflowSupported());
}

}  // namespace
}  // namespace kdvq::testing
