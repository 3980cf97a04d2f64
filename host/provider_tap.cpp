#include "host/provider_tap.h"

namespace kdhost {

namespace {

class TappedCursor : public ado::Cursor {
public:
    TappedCursor(std::unique_ptr<ado::Cursor> inner, const CallListener& listener)
        : inner_(std::move(inner)), listener_(listener) {}

    const std::vector<std::string>& Columns() const override { return inner_->Columns(); }
    bool Fetch(std::vector<automation::Variant>& row, ado::RowKey& key) override { return inner_->Fetch(row, key); }
    void Restart() override { inner_->Restart(); }
    // Without it every recordset opened through the tap would read all its
    // rows at once.
    bool RereadsCheaply() const override { return inner_->RereadsCheaply(); }
    const std::string& BaseTable() const override { return inner_->BaseTable(); }

    ado::RowKey InsertRow(const std::vector<int>& columns, const std::vector<automation::Variant>& values) override {
        listener_(TappedCall::kRowInsert, inner_->BaseTable());
        return inner_->InsertRow(columns, values);
    }
    void UpdateRow(ado::RowKey key, const std::vector<automation::Variant>& original, const std::vector<int>& columns,
                   const std::vector<automation::Variant>& values) override {
        listener_(TappedCall::kRowUpdate, inner_->BaseTable());
        inner_->UpdateRow(key, original, columns, values);
    }

private:
    std::unique_ptr<ado::Cursor> inner_;
    // The provider's listener; a cursor never outlives its connection's
    // provider.
    const CallListener& listener_;
};

class TappedProvider : public ado::Provider {
public:
    TappedProvider(std::unique_ptr<ado::Provider> inner, CallListener listener)
        : inner_(std::move(inner)), listener_(std::move(listener)) {}

    std::string Name() const override { return inner_->Name(); }
    void Execute(const std::string& sql) override {
        listener_(TappedCall::kStatement, sql);
        inner_->Execute(sql);
    }
    std::unique_ptr<ado::Cursor> OpenQuery(const std::string& sql, const ado::QueryOptions& options) override {
        listener_(TappedCall::kQuery, sql);
        return std::make_unique<TappedCursor>(inner_->OpenQuery(sql, options), listener_);
    }
    void BeginTrans() override { inner_->BeginTrans(); }
    void CommitTrans() override {
        listener_(TappedCall::kCommit, "");
        inner_->CommitTrans();
    }
    void RollbackTrans() override { inner_->RollbackTrans(); }
    void BeginOuterTransaction() override { inner_->BeginOuterTransaction(); }
    void CommitOuterTransaction() override {
        listener_(TappedCall::kOuterCommit, "");
        inner_->CommitOuterTransaction();
    }
    void RollbackOuterTransaction() override { inner_->RollbackOuterTransaction(); }
    // The provider's own work, not a call the run makes: not told.
    void UseHelperIndexes(bool use) override { inner_->UseHelperIndexes(use); }
    int DropHelperIndexes() override { return inner_->DropHelperIndexes(); }
    int CountHelperIndexes() override { return inner_->CountHelperIndexes(); }
    bool Abandon() override { return inner_->Abandon(); }

private:
    std::unique_ptr<ado::Provider> inner_;
    CallListener listener_;
};

}  // namespace

const char* TappedCallName(TappedCall call) {
    switch (call) {
        case TappedCall::kStatement: return "statement";
        case TappedCall::kQuery: return "query";
        case TappedCall::kRowInsert: return "row insert";
        case TappedCall::kRowUpdate: return "row update";
        case TappedCall::kCommit: return "commit";
        case TappedCall::kOuterCommit: return "upgrader commit";
    }
    return "call";
}

std::unique_ptr<ado::Provider> TapProvider(std::unique_ptr<ado::Provider> inner, CallListener listener) {
    return std::make_unique<TappedProvider>(std::move(inner), std::move(listener));
}

}  // namespace kdhost
