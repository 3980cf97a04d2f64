// Which extensions the repository supports, read once per thread.
#include "framework/mod_kd_startup.h"
#include "framework/mod_main.h"
#include "framework/object_variable.h"

namespace kdvq {

namespace {

// Filled on the first question of a thread and kept while the library
// stays loaded: extensions are installed by the host, never during an
// upgrade run.
com::ComPtr<automation::Dictionary>& ThreadExtensionCache() {
    thread_local com::ComPtr<automation::Dictionary> cache;
    return cache;
}

void FillCache(automation::Dictionary& cache, ado::Connection* connection, const std::string& prefix) {
    RecordsetPtr rs = CreateReadOnlyRS("SELECT * FROM " + prefix + "KD_VQ_SUPPORTED_EXTENSIONS", connection);
    ado::Recordset& extensions = Deref(rs.Get());
    while (!extensions.EOF()) {
        Variant name = extensions.Get("NAME");
        cache.Add(name, name);
        extensions.MoveNext();
    }
    extensions.Close();
}

}  // namespace

bool VerifySupportedExtension(ado::Connection* connection, const std::string& prefix, const std::string& extension) {
    try {
        com::ComPtr<automation::Dictionary>& cache = ThreadExtensionCache();
        if (!cache) {
            cache = automation::Dictionary::Create(automation::CompareMode::Text);
            FillCache(*cache, connection, prefix);
        }
        return cache->Exists(Variant(extension));
    } catch (...) {
        HandleFailure("modMain::VerifySupportedExtension");
        return false;
    }
}

void ResetSupportedExtensionCacheForThisThread() { ThreadExtensionCache().Reset(); }

}  // namespace kdvq
