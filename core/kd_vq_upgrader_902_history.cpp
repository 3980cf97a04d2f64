// Fills the user columns of the history rows written before 9.0.2: each
// row gets the user matching its name or id, and rows that still lack
// either are given to the first user of KD_VQ_USER.
#include "core/field_text.h"
#include "core/kd_vq_upgrader_902.h"

namespace kdvq {

bool KDVqUpgrader902::UpdateHistory() {
    // The report of a failure names the statement last built.
    std::string sql;
    try {
        Starting("Updating history user name and id fields");
        RecordsetPtr usersRs = CreateEditRS("select * from " + prefix_ + "KD_VQ_USER", connection_.Get());
        ado::Recordset& users = Opened(usersRs);
        if (IsEmpty(users)) return true;

        const int32_t defaultUserId = users.Get("USER_ID").CLng();
        const std::string defaultUserName = TextOf(users.Get("USER_NAME"));
        bool allOk = true;
        // Names go between the quotes as they are: a name with a quote makes
        // its statements fail, and the others still run.
        for (users.MoveFirst(); !AtEof(users); users.MoveNext()) {
            const std::string id = TextOf(users.Get("USER_ID"));
            const std::string name = TextOf(users.Get("USER_NAME"));
            sql = "UPDATE KD_VQ_HISTORY SET USER_NAME = '" + name + "' WHERE USER_ID=" + id + " AND USER_NAME Is Null";
            allOk &= Run(sql, "Updating unassigned history user name", true);
            sql = "UPDATE KD_VQ_HISTORY SET USER_ID = " + id + " WHERE USER_NAME = '" + name + "' AND USER_ID Is Null";
            allOk &= Run(sql, "Updating unassigned history user id", true);
        }
        sql = "UPDATE KD_VQ_HISTORY SET USER_ID = " + std::to_string(defaultUserId) + ", USER_NAME = '" +
              defaultUserName + "' WHERE USER_NAME Is Null OR USER_ID Is Null";
        allOk &= Run(sql, "Updating unassigned history user id's and names", true);
        users.Close();
        Finished(LoadResString(allOk ? 102 : 103));
        return allOk;
    } catch (...) {
        HandleFailure(Tag("UpdateHistory"), false, 1, 0, kCrLf + "SQL: " + sql);
        return false;
    }
}

}  // namespace kdvq
