#include "tests/reliability/fault_trace.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace kdhost::testing {

std::vector<TracedCall> ReadTrace(const std::string& path) {
    std::vector<TracedCall> calls;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        std::vector<std::string> fields;
        std::istringstream split(line);
        for (std::string field; std::getline(split, field, '\t');) fields.push_back(field);
        if (fields.size() < 2) continue;  // a line cut short by a kill
        TracedCall call;
        call.number = std::atol(fields[0].c_str());
        call.kind = fields[1];
        call.text = fields.size() > 2 ? fields[2] : "";
        call.injected = fields.size() > 3 && fields[3] == "injected";
        calls.push_back(call);
    }
    return calls;
}

long FindCall(const std::vector<TracedCall>& calls, const std::string& kind, const std::string& text, long from) {
    for (const TracedCall& call : calls)
        if (call.number >= from && call.kind == kind && (text.empty() || call.text == text)) return call.number;
    return 0;
}

}  // namespace kdhost::testing
