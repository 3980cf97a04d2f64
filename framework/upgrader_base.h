#pragma once
// The skeleton every upgrader class follows: the three members, the
// Enabled/Execute sequence, Name/Description by resource id, the common
// CategoriesToReg, and the per-member error handlers with their tags.
#include <cstdint>
#include <functional>
#include <string>

#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "framework/upgrader_interfaces.h"

namespace kdvq {

class UpgraderBase : public com::Object<UpgraderBase, IKDVqDatabaseUpgrader, IKDRegInCat> {
public:
    // ---- IKDVqDatabaseUpgrader ----
    HRESULT Enabled(IKDLogin* pLogin, int32_t* lVqDBVersion, VARIANT_BOOL* result) final;
    HRESULT Name(std::string* result) final;
    HRESULT Description(std::string* result) final;
    HRESULT TavixSystemTables(Variant* result) final;
    HRESULT Execute(IKDProgressCallback* pCallback, VARIANT_BOOL* result) final;
    // ---- IKDRegInCat ----
    HRESULT CategoriesToReg(Variant* result) final;
    // Public member outside both interfaces, kept for callers of an earlier
    // contract; Empty. The index class hides it: it never had one.
    Variant TablesToUpgrade();

    // The C++ name of the class ("KDVqUpgrader830").
    const std::string& ClassName() const { return className_; }

    // Members, readable by tests.
    ado::Connection* GetConnection() const { return connection_.Get(); }
    const std::string& GetTablePrefix() const { return prefix_; }

protected:
    // className: the registered name; tagName: the class name that the
    // error tags carry (differs for a few classes).
    UpgraderBase(std::string className, std::string tagName);
    ~UpgraderBase() override;

    // ---- hooks, each run inside its member's handler ----
    // Default: TakeLogin, then IsEnabledFor(version).
    virtual bool OnEnabled(IKDLogin* login, int32_t& version);
    virtual bool IsEnabledFor(int32_t version) { (void)version; return false; }
    virtual int32_t NameId() const = 0;
    virtual int32_t DescriptionId() const = 0;
    virtual std::string OnName() { return LoadResString(NameId()); }
    virtual std::string OnDescription() { return LoadResString(DescriptionId()); }
    virtual Variant OnTavixSystemTables() { return Variant(); }
    // Default Execute steps 2-4: dialect routine, then SetDBVersion.
    virtual bool OnExecute();
    virtual bool UpgradeOracle() { return false; }
    virtual bool UpgradeMSSQL() { return false; }
    // Version table and number written by the default OnExecute.
    virtual std::string VersionTable() const { return ""; }
    virtual int32_t NewVersion() const { return 0; }

    // ---- tags ----
    // tagName + "::" + member, e.g. Tag("UpgradeOracle").
    std::string Tag(const std::string& member) const { return tagName_ + "::" + member; }
    // Interface member tags; TavixSystemTables carries Enabled's by default.
    virtual std::string EnabledTag() const { return Tag("IKDVqDatabaseUpgrader_Enabled"); }
    virtual std::string TavixSystemTablesTag() const { return EnabledTag(); }

    // ---- helpers for the classes ----
    // Enabled steps 2 and 3: connection (cast to the ADO connection) and
    // table prefix from the login.
    void TakeLogin(IKDLogin* login);
    // The login's connection, cast to the ADO connection; an object that is
    // no connection raises "Type mismatch".
    static ConnectionPtr LoginConnection(IKDLogin& login);
    // Dialect test: the provider text contains "Oracle" (case-insensitive).
    bool IsOracle() const;
    void Starting(const std::string& text) { StepStarting(callback_.Get(), text); }
    void Finished(const std::string& text) { StepFinished(callback_.Get(), text); }
    bool Run(const std::string& sql, const std::string& progressText, bool silent = false) {
        return DoCommand(connection_.Get(), sql, progressText, callback_.Get(), silent);
    }
    // Runs body under a handler with tag: a failure is reported (and raised
    // again when raise is true); with raise false the handler answers
    // failureValue.
    template <class R, class F>
    R Handled(const std::string& tag, F&& body, bool raise = true, R failureValue = R()) {
        try {
            return body();
        } catch (...) {
            HandleFailure(tag, raise, 1);
            return failureValue;
        }
    }

    ConnectionPtr connection_;
    std::string prefix_;
    CallbackPtr callback_;
    // The last numbered step an Execute that numbers its steps reached; its
    // failure report names it ("Error at line: "). 0: no numbered step.
    int32_t executeLine_ = 0;

private:
    std::string className_;
    std::string tagName_;
};

// Reads a Boolean answer of an upgrader call (raising a failed call).
bool CallEnabled(IKDVqDatabaseUpgrader* upgrader, IKDLogin* login, int32_t version);
bool CallExecute(IKDVqDatabaseUpgrader* upgrader, IKDProgressCallback* callback);

}  // namespace kdvq
