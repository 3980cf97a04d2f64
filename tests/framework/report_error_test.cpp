// The error routine: what reaches the logger, what is raised, and how the
// message and source change for the caller.
#include <gtest/gtest.h>

#include <optional>

#include "framework/mod_kd_startup.h"
#include "tests/support/test_host.h"
#include "tests/support/transcript_file.h"

namespace kdvq {
namespace {

using automation::BasicError;

struct Raised {
    int32_t number;
    std::string source;
    std::string description;
    bool operator==(const Raised& o) const {
        return number == o.number && source == o.source && description == o.description;
    }
};

// What reaches the logger in each case is in
// transcripts/report_error_test/<name>.txt.
struct ReportCase {
    const char* name;
    std::string source;
    bool raise;
    int32_t level;
    int32_t line;
    std::string build;
    std::optional<Raised> raised;
    std::string messageAfter;
    std::string sourceAfter;
};

// Restores the thread's build text when a case changed it.
class BuildText {
public:
    explicit BuildText(const std::string& build) : saved_(ThreadGlobals().build) { ThreadGlobals().build = build; }
    ~BuildText() { ThreadGlobals().build = saved_; }

private:
    std::string saved_;
};

TEST(ReportError, LogsAndRaisesAsAsked) {
    const std::string tagged = "KDVqUpgrader830::UpgradeOracle\r\nType mismatch";
    const std::vector<ReportCase> cases = {
        {"level 2 with raise is logged only", "kdVqUpgraders", true, 2, 0, "9.3.1", std::nullopt, tagged,
         "kdVqUpgraders"},
        {"level 1 without raise is logged only", "kdVqUpgraders", false, 1, 0, "9.3.1", std::nullopt, tagged,
         "kdVqUpgraders"},
        {"level 1 with raise keeps the failure's number and source", "kdVqUpgraders", true, 1, 0, "9.3.1",
         Raised{13, "kdPlatform", tagged}, tagged, "kdVqUpgraders"},
        {"empty source doubles the colon", "", false, 1, 0, "9.3.1", std::nullopt, tagged, "Unknown Source:"},
        {"line number with the build text", "kdVqUpgraders", true, 1, 22, "9.3.1",
         Raised{13, "kdPlatform", tagged + "\r\nError at line: 22 - Build: 9.3.1"},
         tagged + "\r\nError at line: 22 - Build: 9.3.1", "kdVqUpgraders"},
        {"line number without a build text", "kdVqUpgraders", false, 2, 7, "", std::nullopt,
         tagged + "\r\nError at line: 7 - Build: UNKNOWN", "kdVqUpgraders"},
    };
    for (const ReportCase& c : cases) {
        SCOPED_TRACE(c.name);
        testing::TestHost host;
        BuildText build(c.build);
        std::string message = tagged;
        std::string source = c.source;
        std::optional<Raised> raised;
        try {
            ReportError(message, source, c.raise, c.level, BasicError(13, "kdPlatform", "Type mismatch", c.line));
        } catch (const BasicError& e) {
            raised = Raised{e.Number(), e.Source(), e.Description()};
        }
        testing::ExpectTranscript(c.name, host.Log().Lines());
        EXPECT_EQ(raised, c.raised);
        EXPECT_EQ(message, c.messageAfter);
        EXPECT_EQ(source, c.sourceAfter);
    }
}

// A handler tags the failure in flight and raises it on; a line carried up
// from a callee is not the handler's own. (Its extra text and its own line
// are seen in the 9.0.2 session transcripts.)
TEST(HandleFailure, TagsTheFailureInFlightWithoutTheCalleesLine) {
    testing::TestHost host;
    std::optional<Raised> raised;
    try {
        try {
            throw BasicError(-2147217900, "db", "no such table", 99);
        } catch (...) {
            HandleFailure("KDUpgradeSM902::MoveHistoryRecords", true, 1, 0, "");
        }
    } catch (const BasicError& e) {
        raised = Raised{e.Number(), e.Source(), e.Description()};
    }
    EXPECT_EQ(host.Log().Lines(),
              std::vector<std::string>{
                  "LOG 1 kdVqUpgraders:\\r\\nKDUpgradeSM902::MoveHistoryRecords\\r\\nno such table"});
    EXPECT_EQ(raised, (Raised{-2147217900, "db", "KDUpgradeSM902::MoveHistoryRecords\r\nno such table"}));
}

}  // namespace
}  // namespace kdvq
