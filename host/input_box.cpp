#include "host/input_box.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "platform/com/error_info.h"

namespace kdhost {

com::HRESULT HostInputBox::InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                                const kdvq::Variant&, const kdvq::Variant&, const kdvq::Variant&,
                                const kdvq::Variant&, std::string* answer) {
    return com::Guard([&] {
        auto given = answers_->byTitle.find(title);
        if (given != answers_->byTitle.end()) {
            *answer = given->second;
        } else if (answers_->interactive && answers_->ask) {
            if (answers_->beforePrompt) answers_->beforePrompt();
            auto check = answers_->checksByTitle.find(title);
            *answer = AskUntilAccepted(answers_->ask, check == answers_->checksByTitle.end() ? nullptr : check->second,
                                       answers_->tell, prompt, title, defaultText);
        } else {
            *answer = "";
        }
    });
}

std::string AskOnTerminal(const std::string& prompt, const std::string& title, const std::string& defaultText) {
    // A question that ends with its own colon gets no second one.
    bool colon = !prompt.empty() && prompt.back() == ':' && defaultText.empty();
    std::fprintf(stderr, "%s\n%s%s%s%s ", title.c_str(), prompt.c_str(), defaultText.empty() ? "" : " [",
                 defaultText.empty() ? "" : (defaultText + "]").c_str(), colon ? "" : ":");
    std::fflush(stderr);
    std::string line;
    if (!std::getline(std::cin, line) || line.empty()) return defaultText;
    return line;
}

void TellOnTerminal(const std::string& reason) { std::fprintf(stderr, "%s\n", reason.c_str()); }

bool CanAskOnTerminal() { return ::isatty(STDIN_FILENO) && ::isatty(STDERR_FILENO); }

std::string AskUntilAccepted(const Asker& ask, const AnswerCheck& check, const Teller& tell, const std::string& prompt,
                             const std::string& title, const std::string& defaultText) {
    for (;;) {
        std::string answer = ask(prompt, title, defaultText);
        std::string problem = answer.empty() || !check ? "" : check(answer);
        if (problem.empty()) return answer;
        if (tell) tell(problem);
        // At the end of the input the asker answers the default: asking
        // again would get the same answer forever.
        if (answer == defaultText) return "";
    }
}

}  // namespace kdhost
