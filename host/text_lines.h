#pragma once
// Texts from the upgraders end their lines with CR LF (their own
// convention); the host shows them as separate lines.
#include <string>
#include <vector>

namespace kdhost {

// Splits at CR LF, LF or a lone CR; always at least one (maybe empty) line.
std::vector<std::string> SplitLines(const std::string& text);

// Removes blanks and tabs at the end.
std::string TrimRight(std::string text);

}  // namespace kdhost
