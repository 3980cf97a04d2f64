#pragma once
// The entries of a runner's log file without their time stamps, so that
// tests compare them whole: "ERROR kdVqUpgraders:\n    modMain::DoCommand\n..."
// (the level word, the first line of the text, then the indented lines
// that follow it).
#include <string>
#include <vector>

namespace kdvq::server {

std::vector<std::string> LogEntries(const std::string& logText);

}  // namespace kdvq::server
