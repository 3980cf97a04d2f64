#include "bench/figures_text.h"

#include <sstream>
#include <vector>

namespace bench {

namespace {

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream in(line);
    std::string field;
    while (std::getline(in, field, '\t')) fields.push_back(field);
    return fields;
}

// Every line of text split into its fields.
std::vector<std::vector<std::string>> Lines(const std::string& text) {
    std::vector<std::vector<std::string>> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) lines.push_back(Fields(line));
    return lines;
}

std::string Real(double value) {
    std::ostringstream out;
    out.precision(17);
    out << value;
    return out.str();
}

}  // namespace

std::string EncodeRun(const RunFigures& f) {
    std::string text = "run\t" + Real(f.seconds) + "\t" + std::to_string(f.rowsChanged) + "\t" +
                       (f.succeeded ? "1" : "0") + "\n";
    for (const UpgraderFigures& u : f.upgraders)
        text += u.className + "\t" + Real(u.seconds) + "\t" + std::to_string(u.rowsChanged) + "\t" +
                Real(u.historyUpdateSeconds) + "\t" + std::to_string(u.peakKiB) + "\t" + (u.succeeded ? "1" : "0") +
                "\n";
    return text;
}

RunFigures DecodeRun(const std::string& text) {
    RunFigures f;
    for (const auto& fields : Lines(text)) {
        if (fields.size() == 4 && fields[0] == "run") {
            f.seconds = std::stod(fields[1]);
            f.rowsChanged = std::stoll(fields[2]);
            f.succeeded = fields[3] == "1";
        } else if (fields.size() == 6) {
            f.upgraders.push_back({fields[0], std::stod(fields[1]), std::stoll(fields[2]), std::stod(fields[3]),
                                   std::stoll(fields[4]), fields[5] == "1"});
        }
    }
    return f;
}

std::string EncodeFloor(const FloorFigures& f) {
    std::string text = "floor\t" + Real(f.seconds) + "\t" + std::to_string(f.statements) + "\t" +
                       std::to_string(f.failures) + "\t" + std::to_string(f.unreadable) + "\n";
    for (const FloorSection& s : f.sections)
        text += s.name + "\t" + Real(s.seconds) + "\t" + Real(s.historyUpdateSeconds) + "\t" +
                std::to_string(s.statements) + "\n";
    return text;
}

FloorFigures DecodeFloor(const std::string& text) {
    FloorFigures f;
    for (const auto& fields : Lines(text)) {
        if (fields.size() == 5 && fields[0] == "floor") {
            f.seconds = std::stod(fields[1]);
            f.statements = std::stoull(fields[2]);
            f.failures = std::stoull(fields[3]);
            f.unreadable = std::stoull(fields[4]);
        } else if (fields.size() == 4) {
            f.sections.push_back({fields[0], std::stod(fields[1]), std::stod(fields[2]), std::stoull(fields[3])});
        }
    }
    return f;
}

}  // namespace bench
