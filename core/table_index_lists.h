#pragma once
// The secondary indices of the core tables and of the workflow and design
// tables, in the order they are (re)created.
#include <vector>

namespace kdvq {

struct TableIndex {
    const char* table;
    const char* columns;  // as written between the parentheses
    const char* name;
    // The Oracle list names this index differently; null when it does not.
    const char* oracleName = nullptr;
};

const std::vector<TableIndex>& CoreTableIndices();
const std::vector<TableIndex>& WorkflowTableIndices();

}  // namespace kdvq
