#pragma once
// Whether the run's log file can be written, found out before anything
// changes and without making the file: the log is opened on its first
// entry (log_sink.h), and a run that is refused leaves no log behind.
#include <string>

namespace kdhost {

// An existing file must open for appending; a missing one needs an
// existing folder that can be written. Raises BadInput naming the file.
void CheckLogFile(const std::string& path);

}  // namespace kdhost
