#pragma once
// Release 8.3.0 of the core tables: subtasks, supported extensions, task
// roles, tasks (with the task-id sequence row), versions, and the two
// ProgID columns of KD_VQ_NODE_TYPE.
#include "core/core_upgrader.h"

namespace kdvq {

class KDVqUpgrader830 : public CoreUpgrader {
public:
    KDVqUpgrader830();

    // The statements of one dialect, in the order the steps run.
    struct Statements {
        const char* routine;  // the routine's name in its error tag
        const char* createSubtasks;
        const char* createSupportedExtensions;
        const char* createTaskRole;
        const char* createTasks;
        const char* insertTaskSequence;
        const char* createVersions;
        const char* addDeleterProgId;
        const char* addVersionNamerProgId;
        const char* taskRoleProgress;  // null: the resource text like every table
    };

protected:
    bool UpgradeOracle() override;
    bool UpgradeMSSQL() override;

private:
    bool Upgrade(const Statements& s);
    // Runs the create statement when table is missing, folding its result
    // into ok; true when it ran. The progress text is resource 501 with the
    // table name unless a fixed text is given.
    bool CreateMissing(const std::string& table, const std::string& sql, bool& ok,
                       const char* fixedProgress = nullptr);
    void AddMissingColumn(const std::string& column, const std::string& sql, bool& ok);
};

}  // namespace kdvq
