#pragma once
// A host for tests: recording progress callback and logger that write into
// one transcript together with the scripted provider, resource strings with
// a fixed, readable form, and the host components the library creates.
//
// Transcript line forms (compared whole in golden tests):
//   "START <text>"            callback operation 4 (step about to run)
//   "DONE <text>"             callback operation 3 (step finished)
//   "LOG <level> <text>"      logger operation 1; CR LF in text shown as "\r\n"
//   "INPUT <prompt>|<title>"  input box asked (answer set by the test)
//   "REGISTRY OPEN <hive> <mode> <key>", "REGISTRY READ <name> <type> <default>"
//                             registry component asked
//   and the scripted provider's own lines (see platform/ado/scripted).
// Resource strings read "res<id>" or "res<id>(v1,v2,...)" with the
// substitution values as text, e.g. "res501(KD_VQ_SUBTASKS)"; 102 reads
// "res102".
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/host_interfaces.h"
#include "platform/ado/ado.h"
#include "platform/ado/scripted/scripted_provider.h"
#include "platform/com/unknown.h"

namespace kdvq::testing {

class Transcript {
public:
    void Add(std::string line) { lines_.push_back(std::move(line)); }
    const std::vector<std::string>& Lines() const { return lines_; }

private:
    std::vector<std::string> lines_;
};

// Creating a TestHost registers, in this process, the host class objects
// the library creates (logger, resource strings, category service, input
// box, registry component and, unless disabled, the probe), and runs the
// library's start-up routine on the calling thread when it has not run yet.
// It also forgets the thread's supported-extension cache, so that every test
// starts as a freshly started host would. Destroying it revokes the class
// objects. One TestHost per test. The library keeps the logger it made at
// start-up for the life of the thread; that logger writes into the
// transcript of whichever TestHost exists at the time.
class TestHost {
public:
    TestHost();
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    Transcript& Log() { return *transcript_; }

    // A login object handing out the connection and prefix.
    com::ComPtr<IKDLogin> Login(ado::Connection* connection, const std::string& prefix = "");
    // A callback recording "START"/"DONE" lines.
    com::ComPtr<IKDProgressCallback> Callback();

    // A connection over a scripted provider whose lines go to the
    // transcript; its Provider text is providerName.
    com::ComPtr<ado::Connection> ScriptedConnection(const std::string& providerName,
                                                   ado::ScriptedProvider** provider = nullptr);

    // Answer of the input box (empty answer by default).
    void SetInputBoxAnswer(const std::string& answer) { *inputAnswer_ = answer; }
    // Values the registry component returns, by value name.
    void SetRegistryValue(const std::string& valueName, const std::string& value) { (*registry_)[valueName] = value; }
    // Whether the probe component can be created (registered by default).
    void SetProbeAvailable(bool available);

    // The category identifier text the category service answers for 122.
    static std::string UpgraderCategory();

private:
    std::shared_ptr<Transcript> transcript_;
    std::shared_ptr<std::string> inputAnswer_;
    std::shared_ptr<std::map<std::string, std::string>> registry_;
    std::vector<unsigned long> cookies_;
    unsigned long probeCookie_ = 0;
};

// A temporary directory removed with its contents at the end of the test.
class TempDir {
public:
    TempDir();
    ~TempDir();
    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// Opens a SQLite database file through the native provider, creating the
// file when it does not exist yet.
com::ComPtr<ado::Connection> OpenSqlite(const std::string& path);
// Runs statements (separated by ";\n") straight on a connection.
void ExecAll(ado::Connection* connection, const std::string& statements);
// The rows a query answers, one text per row: the values as
// Variant::Describe writes them, joined with "|" (e.g. "1206|'ABC'|Null").
std::vector<std::string> QueryRows(ado::Connection* connection, const std::string& sql);

}  // namespace kdvq::testing
