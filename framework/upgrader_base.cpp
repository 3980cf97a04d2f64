// The behaviour all upgrader classes share: the Enabled and Execute
// sequences, Name and Description by resource id, the common registration,
// and a handler around every member.
#include "framework/upgrader_base.h"

#include <algorithm>
#include <cctype>

#include "framework/library_objects.h"
#include "framework/object_variable.h"
#include "platform/automation/collection.h"
#include "platform/com/error_info.h"
#include "platform/com/runtime.h"

namespace kdvq {

namespace {

VARIANT_BOOL ToVariantBool(bool value) { return value ? automation::VARIANT_TRUE : automation::VARIANT_FALSE; }

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// An interface member: the body runs under the member's handler (which
// logs and raises again) and the raised failure becomes the failed result
// the host sees, with number, source and description.
template <class R, class F>
HRESULT Member(R* result, F&& body) {
    if (!result) return com::E_POINTER;
    return com::Guard([&] { *result = body(); });
}

}  // namespace

UpgraderBase::UpgraderBase(std::string className, std::string tagName)
    : className_(std::move(className)), tagName_(std::move(tagName)) {
    UpgraderObjectCreated();
}

UpgraderBase::~UpgraderBase() { UpgraderObjectDestroyed(); }

HRESULT UpgraderBase::Enabled(IKDLogin* pLogin, int32_t* lVqDBVersion, VARIANT_BOOL* result) {
    if (result) *result = automation::VARIANT_FALSE;
    if (!lVqDBVersion) return com::E_POINTER;
    return Member(result, [&] {
        return ToVariantBool(Handled<bool>(EnabledTag(), [&] { return OnEnabled(pLogin, *lVqDBVersion); }));
    });
}

HRESULT UpgraderBase::Name(std::string* result) {
    return Member(result, [&] { return Handled<std::string>(Tag("IKDVqDatabaseUpgrader_Name"), [&] { return OnName(); }); });
}

HRESULT UpgraderBase::Description(std::string* result) {
    return Member(result, [&] {
        return Handled<std::string>(Tag("IKDVqDatabaseUpgrader_Description"), [&] { return OnDescription(); });
    });
}

HRESULT UpgraderBase::TavixSystemTables(Variant* result) {
    return Member(result,
                  [&] { return Handled<Variant>(TavixSystemTablesTag(), [&] { return OnTavixSystemTables(); }); });
}

HRESULT UpgraderBase::Execute(IKDProgressCallback* pCallback, VARIANT_BOOL* result) {
    if (result) *result = automation::VARIANT_FALSE;
    return Member(result, [&] {
        executeLine_ = 0;
        try {
            callback_ = pCallback;
            return ToVariantBool(OnExecute());
        } catch (...) {
            HandleFailure(Tag("IKDVqDatabaseUpgrader_Execute"), true, 1, executeLine_);
            return automation::VARIANT_FALSE;
        }
    });
}

HRESULT UpgraderBase::CategoriesToReg(Variant* result) {
    return Member(result, [&] {
        return Handled<Variant>(Tag("IKDRegInCat_CategoriesToReg"), [&] {
            com::HRESULT hr = com::S_OK;
            com::ComPtr<IKDCategoryService> service =
                com::CreateInstance<IKDCategoryService>(CLSID_KDCategoryService, IID_IKDCategoryService, &hr);
            com::Check(hr);
            com::ComPtr<automation::Collection> categories = automation::Collection::Create();
            std::string category;
            com::Check(service->GetCategory(kUpgraderCategoryCode, &category));
            categories->Add(Variant(category));
            return Variant(com::ComPtr<com::IUnknown>(categories->Unknown()));
        });
    });
}

Variant UpgraderBase::TablesToUpgrade() {
    return Handled<Variant>(Tag("IKDVqDatabaseUpgrader_TablesToUpgrade"), [] { return Variant(); });
}

bool UpgraderBase::OnEnabled(IKDLogin* login, int32_t& version) {
    TakeLogin(login);
    return IsEnabledFor(version);
}

bool UpgraderBase::OnExecute() {
    const bool upgraded = IsOracle() ? UpgradeOracle() : UpgradeMSSQL();
    if (!upgraded) return false;
    return SetDBVersion(connection_.Get(), prefix_, VersionTable(), NewVersion());
}

ConnectionPtr UpgraderBase::LoginConnection(IKDLogin& login) {
    com::ComPtr<com::IUnknown> object;
    com::Check(login.GetConnection(object.Put()));
    ConnectionPtr connection = ado::ConnectionFromUnknown(object.Get());
    // An object that is not a connection cannot be assigned to one.
    if (object && !connection) automation::RaiseBasic(automation::kErrTypeMismatch, kSource);
    return connection;
}

void UpgraderBase::TakeLogin(IKDLogin* login) {
    IKDLogin& source = Deref(login);
    connection_ = LoginConnection(source);

    std::string prefix;
    com::Check(source.GetTablePrefix(&prefix));
    prefix_ = prefix;
}

bool UpgraderBase::IsOracle() const {
    // A text comparison: "ORACLE" and "OraOLEDB.Oracle" count, "MSDAORA"
    // does not.
    return Lower(Deref(connection_.Get()).Provider()).find("oracle") != std::string::npos;
}

bool CallEnabled(IKDVqDatabaseUpgrader* upgrader, IKDLogin* login, int32_t version) {
    VARIANT_BOOL result = automation::VARIANT_FALSE;
    com::Check(Deref(upgrader).Enabled(login, &version, &result));
    return result != automation::VARIANT_FALSE;
}

bool CallExecute(IKDVqDatabaseUpgrader* upgrader, IKDProgressCallback* callback) {
    VARIANT_BOOL result = automation::VARIANT_FALSE;
    com::Check(Deref(upgrader).Execute(callback, &result));
    return result != automation::VARIANT_FALSE;
}

}  // namespace kdvq
