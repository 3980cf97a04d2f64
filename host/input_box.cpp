#include "host/input_box.h"

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
            *answer = answers_->ask(prompt, title, defaultText);
        } else {
            *answer = "";
        }
    });
}

std::string AskOnTerminal(const std::string& prompt, const std::string& title, const std::string& defaultText) {
    std::fprintf(stderr, "%s\n%s%s%s: ", title.c_str(), prompt.c_str(), defaultText.empty() ? "" : " [",
                 defaultText.empty() ? "" : (defaultText + "]").c_str());
    std::fflush(stderr);
    std::string line;
    if (!std::getline(std::cin, line) || line.empty()) return defaultText;
    return line;
}

}  // namespace kdhost
