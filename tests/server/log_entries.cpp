#include "tests/server/log_entries.h"

#include <sstream>

namespace kdvq::server {

std::vector<std::string> LogEntries(const std::string& logText) {
    std::vector<std::string> entries;
    std::istringstream lines(logText);
    for (std::string line; std::getline(lines, line);) {
        bool continues = !line.empty() && (line[0] == ' ' || line[0] == '\t');
        if (continues && !entries.empty()) {
            entries.back() += "\n" + line;
            continue;
        }
        // "2024-05-17 09:41:07.250 LEVEL text": the stamp is two words.
        size_t afterDate = line.find(' ');
        size_t afterTime = afterDate == std::string::npos ? afterDate : line.find(' ', afterDate + 1);
        entries.push_back(afterTime == std::string::npos ? line : line.substr(afterTime + 1));
    }
    return entries;
}

}  // namespace kdvq::server
