#include "host/database_id_answer.h"

#include "host/bad_input.h"
#include "host/host_session.h"
#include "host/input_box.h"
#include "host/input_checks.h"

namespace kdhost {

namespace {

// "A", "A and B", "A, B and C"
std::string Names(const std::vector<std::string>& names) {
    std::string text;
    for (size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    }
    return text;
}

}  // namespace

std::string AskForDatabaseIdNow(const Target& target, const std::vector<std::string>& asking) {
    std::string askers = Names(asking) + " will ask";
    if (!CanAskOnTerminal()) {
        throw BadInput(target.text + ": the repository has no identifier yet, and " + askers +
                       " for one; give it with --database-id ID (or run on a terminal to be asked)");
    }
    std::string question = LoadHostStrings()->Find(kDatabaseIdQuestion).value_or("");
    std::string answer = AskUntilAccepted(AskOnTerminal, DatabaseIdProblem, TellOnTerminal, question,
                                          kDatabaseIdTitle, "");
    if (answer.empty()) {
        throw BadInput(target.text + ": no identifier was typed, and " + askers +
                       " for one; give it with --database-id ID");
    }
    return answer;
}

}  // namespace kdhost
