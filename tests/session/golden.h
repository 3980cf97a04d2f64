#pragma once
// Expected transcripts for the session and mobile upgrader tests.
#include <string>
#include <vector>

#include "framework/mod_main.h"

namespace kdvq::testing {

// An expected transcript, line by line; the helpers add the lines that one
// call of a shared routine produces.
class Golden {
public:
    Golden& Line(const std::string& line) {
        lines_.push_back(line);
        return *this;
    }
    Golden& Open(const std::string& sql) { return Line("OPEN " + sql); }
    Golden& Missing(const std::string& sql) { return Line("OPEN " + sql + " => ERROR 942"); }
    Golden& Start(const std::string& text) { return Line("START " + text); }
    // A statement run with its progress text that succeeded.
    Golden& Step(const std::string& progress, const std::string& sql) {
        return Start(progress).Line("EXEC " + sql).Line("DONE res102");
    }
    // A statement that failed with a native error; tolerated ones are
    // logged at level 2.
    Golden& FailedStep(const std::string& progress, const std::string& sql, int32_t nativeError) {
        const bool tolerated = IsToleratedNativeError(nativeError);
        return Start(progress)
            .Line("EXEC " + sql + " => ERROR " + std::to_string(nativeError))
            .Line(std::string("LOG ") + (tolerated ? "2" : "1") +
                  " kdVqUpgraders:\\r\\nmodMain::DoCommand\\r\\n-2147217900: scripted failure\\r\\nCommand: " + sql);
    }
    Golden& Add(const Golden& more) {
        lines_.insert(lines_.end(), more.lines_.begin(), more.lines_.end());
        return *this;
    }
    const std::vector<std::string>& Lines() const { return lines_; }

private:
    std::vector<std::string> lines_;
};

}  // namespace kdvq::testing
