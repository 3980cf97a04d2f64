#include "host/final_upgraders.h"

#include <map>

namespace kdhost {

namespace {

const std::string kTableIndices = "KDCreateTableIndices";

const std::map<std::string, std::string>& MarkingParts() {
    static const std::map<std::string, std::string> parts = {
        {"KDHideVqTables", "core"},
        {"KDHideSMTables", "session"},
        {"KDHideWFMTables", "workflow"},
        {"KDHideMobileTables", "mobile"},
    };
    return parts;
}

}  // namespace

bool RunsAfterChains(const std::string& className) {
    return className == kTableIndices || MarkingParts().count(className) != 0;
}

bool FalseIsNoFailure(const std::string& className) { return className == kTableIndices; }

std::string SystemTablePart(const std::string& className) {
    auto found = MarkingParts().find(className);
    return found == MarkingParts().end() ? std::string() : found->second;
}

}  // namespace kdhost
