// The benchmark's floor reads bound values back from the engine's
// expanded statement text.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bench/bound_values.h"

namespace bench {
namespace {

struct ExtractCase {
    const char* what;
    std::string text;
    std::string expanded;
    std::optional<std::vector<BoundValue>> values;
};

TEST(BoundValues, AreReadFromTheExpandedText) {
    using V = std::vector<BoundValue>;
    const ExtractCase cases[] = {
        {"no marks", "SELECT 1", "SELECT 1", V{}},
        {"integers", "UPDATE T SET A = ? WHERE _rowid_ = ?", "UPDATE T SET A = -7 WHERE _rowid_ = 42",
         V{int64_t{-7}, int64_t{42}}},
        {"a real", "INSERT INTO T VALUES (?)", "INSERT INTO T VALUES (1.5e+20)", V{1.5e20}},
        {"null", "INSERT INTO T VALUES (?, ?)", "INSERT INTO T VALUES (NULL, 3)", V{nullptr, int64_t{3}}},
        {"text with a doubled quote", "INSERT INTO T VALUES (?)", "INSERT INTO T VALUES ('O''Brien')",
         V{std::string("O'Brien")}},
        {"text holding a mark and a bracket", "INSERT INTO T VALUES (?,?)", "INSERT INTO T VALUES ('a?]',2)",
         V{std::string("a?]"), int64_t{2}}},
        {"a blob", "INSERT INTO T VALUES (?)", "INSERT INTO T VALUES (x'00ff41')",
         V{Blob{std::string("\x00\xff\x41", 3)}}},
        {"a mark inside a quoted name stays text", "UPDATE \"A?\" SET B = ?", "UPDATE \"A?\" SET B = 1",
         V{int64_t{1}}},
        {"texts that do not match", "UPDATE T SET A = ?", "UPDATE U SET A = 1", std::nullopt},
        {"an expanded text longer than the statement", "SELECT ?", "SELECT 1 2", std::nullopt},
        {"an unterminated text", "SELECT ?", "SELECT 'abc", std::nullopt},
    };
    for (const ExtractCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(ExtractBoundValues(c.text, c.expanded), c.values);
    }
}

}  // namespace
}  // namespace bench
