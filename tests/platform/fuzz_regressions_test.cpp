// Inputs the fuzz targets found to be mishandled, kept as plain cases so
// that an ordinary test run guards them.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <variant>

#include "platform/ado/sqlite/sql_rewrite.h"

namespace {

struct Rewrite {
    const char* sql;
    const char* expected;
};
void PrintTo(const Rewrite& r, std::ostream* os) { *os << r.sql; }

class OwnerCutRegression : public ::testing::TestWithParam<Rewrite> {};

// Cutting the owner must not join ON to the table name when nothing
// separated ON from the owner ("ON[dbo].T" once became "ONT").
TEST_P(OwnerCutRegression, KeepsOnApartFromTheTable) {
    ado::sql::Statement statement = ado::sql::Classify(GetParam().sql);
    const auto* native = std::get_if<ado::sql::NativeStatement>(&statement);
    ASSERT_NE(native, nullptr);
    EXPECT_EQ(native->sql, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Fuzz, OwnerCutRegression,
    ::testing::Values(Rewrite{"CREATE INDEX I ON[dbo].T(A)", "CREATE INDEX I ON T(A)"},
                      Rewrite{"CREATE INDEX I ON\"dbo\".T(A)", "CREATE INDEX I ON T(A)"},
                      Rewrite{"CREATE INDEX I ON[dbo].[T](A)", "CREATE INDEX I ON [T](A)"},
                      Rewrite{"CREATE UNIQUE INDEX I ON[srv].[db].T (A);", "CREATE UNIQUE INDEX I ON T (A);"},
                      Rewrite{"CREATE INDEX I ON/**/dbo.T(A)", "CREATE INDEX I ON/**/T(A)"},
                      Rewrite{"CREATE INDEX I ON PROCESS.T(A)", "CREATE INDEX I ON T(A)"}));

}  // namespace
