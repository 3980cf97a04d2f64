#include "host/host_session.h"

#include "host/bad_input.h"
#include "host/input_checks.h"
#include "host/resource_files.h"

namespace kdhost {

namespace {

const char kStringTableFile[] = "strings.en.txt";

std::shared_ptr<const InputBoxAnswers> Answers(const HostOptions& options) {
    auto answers = std::make_shared<InputBoxAnswers>();
    if (options.databaseId) answers->byTitle[kDatabaseIdTitle] = *options.databaseId;
    answers->interactive = CanAskOnTerminal();
    Console* console = options.console;
    answers->beforePrompt = [console] {
        if (console) console->Interrupt();
    };
    answers->ask = AskOnTerminal;
    // The identifier goes between quotes into the upgraders' statements.
    answers->checksByTitle[kDatabaseIdTitle] = DatabaseIdProblem;
    answers->tell = TellOnTerminal;
    return answers;
}

}  // namespace

std::shared_ptr<const StringTable> LoadHostStrings() {
    try {
        return std::make_shared<StringTable>(StringTable::Load(FindResourceFile(kStringTableFile)));
    } catch (const std::exception& e) {
        throw BadInput(e.what());
    }
}

std::shared_ptr<const Settings> LoadHostSettings(const std::vector<std::string>& options) {
    auto settings = std::make_shared<Settings>();
    try {
        settings->LoadFile(Settings::DefaultPath());
        for (const std::string& option : options) settings->ApplyOption(option);
    } catch (const std::exception& e) {
        throw BadInput(e.what());
    }
    return settings;
}

HostSession::HostSession(const HostOptions& options) {
    configuration_.settings = options.settings ? options.settings : LoadHostSettings({});
    configuration_.strings = LoadHostStrings();
    configuration_.answers = Answers(options);
    configuration_.log = std::make_shared<LogSink>(options.logPath);
    services_ = std::make_unique<HostServices>(configuration_);
}

}  // namespace kdhost
