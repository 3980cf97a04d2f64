#pragma once
// A database the data-access contract runs against. Each backend lives in
// its own contract_*_backend.cpp file and is made fresh for every test.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ado/ado.h"

namespace contract {

// Failing statements whose Errors entries every backend reports its own way.
enum class Failure { kMissingTable, kDuplicateKey };

class Backend {
public:
    virtual ~Backend() = default;

    // Why the backend cannot run here (the test is skipped); "" when it can.
    virtual std::string SkipReason() = 0;
    // A new connection to the test's database.
    virtual com::ComPtr<ado::Connection> Connect() = 0;
    // The connection's Provider text.
    virtual std::string ProviderText() const = 0;
    // A name for a table of the test; servers shared by parallel test
    // processes get names unique to the process, dropped at the end.
    virtual std::string Table(const std::string& base) = 0;
    // The first Errors entry of the failure, as ado_test::DescribeErrors
    // writes it; table as Table() named it.
    virtual std::string ExpectedError(Failure failure, const std::string& table) const = 0;
};

struct BackendFactory {
    const char* name;
    std::unique_ptr<Backend> (*make)();
};

// A test run once per backend: it makes the backend, skips when the
// backend cannot run here, and opens a connection.
class BackendTest : public ::testing::TestWithParam<BackendFactory> {
protected:
    void SetUp() override {
        backend_ = GetParam().make();
        std::string reason = backend_->SkipReason();
        if (!reason.empty()) GTEST_SKIP() << reason;
        connection_ = backend_->Connect();
    }

    std::unique_ptr<Backend> backend_;
    com::ComPtr<ado::Connection> connection_;
};

// Names parameterised tests after their backend.
inline std::string BackendName(const ::testing::TestParamInfo<BackendFactory>& info) { return info.param.name; }

std::unique_ptr<Backend> MakeSqliteBackend();
std::unique_ptr<Backend> MakePostgresOdbcBackend();
std::unique_ptr<Backend> MakeSqliteOdbcBackend();

}  // namespace contract
