#pragma once
// The host's input box. An answer given in advance for the box's title
// (the runner's --database-id answers the "Database ID" box) is used
// without asking; otherwise the question is put on the terminal, and when
// there is no terminal to ask on the answer is empty (which the upgraders
// take as "no answer").
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "framework/host_interfaces.h"
#include "host/host_identifiers.h"
#include "host/host_object.h"

namespace kdhost {

// Puts a question: shows the title, prompt and default, returns the line
// typed (the default for an empty line or end of input).
using Asker =
    std::function<std::string(const std::string& prompt, const std::string& title, const std::string& defaultText)>;
// Why an answer cannot be used; empty when it can.
using AnswerCheck = std::function<std::string(const std::string& answer)>;
using Teller = std::function<void(const std::string& reason)>;

struct InputBoxAnswers {
    std::map<std::string, std::string> byTitle;  // answers given in advance
    bool interactive = false;                     // a terminal can be asked
    std::function<void()> beforePrompt;           // e.g. ends an open progress line
    Asker ask;
    // An answer typed for one of these titles must pass its check; the
    // reason a typed answer is refused is told and the question asked again.
    std::map<std::string, AnswerCheck> checksByTitle;
    Teller tell;
};

class HostInputBox : public HostObject<HostInputBox, kdvq::IKDInputBox> {
public:
    explicit HostInputBox(std::shared_ptr<const InputBoxAnswers> answers) : answers_(std::move(answers)) {}
    static const com::IID& InterfaceIid() { return kIidInputBox; }

    com::HRESULT InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                          const kdvq::Variant& xPos, const kdvq::Variant& yPos, const kdvq::Variant& helpFile,
                          const kdvq::Variant& context, std::string* answer) override;

private:
    std::shared_ptr<const InputBoxAnswers> answers_;
};

// Asks on the standard error stream and reads the standard input.
std::string AskOnTerminal(const std::string& prompt, const std::string& title, const std::string& defaultText);
// Writes the reason an answer was refused on the standard error stream.
void TellOnTerminal(const std::string& reason);
// Whether a question can be put: the standard input and the standard error
// stream are terminals.
bool CanAskOnTerminal();

// Asks until the check accepts the answer, telling the reason for each one
// it refuses first. An empty answer (no answer) is given back unchecked.
std::string AskUntilAccepted(const Asker& ask, const AnswerCheck& check, const Teller& tell, const std::string& prompt,
                             const std::string& title, const std::string& defaultText);

}  // namespace kdhost
