// The floor replayed alongside a run reads the transcript while the run is
// still writing it: it must hand on what reading the finished file hands
// on, in the same order and with the same row counts.
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "bench/transcript_reader.h"
#include "bench/transcript_records.h"
#include "tests/host/memory_stream.h"
#include "tests/support/transcript_file.h"

namespace bench {
namespace {

// Statement 1 stays open while 2 and 3 run; statement 4 never ends.
std::string SampleTranscript() {
    kdhost::testing::MemoryStream stream;
    std::FILE* memory = stream.File();
    WriteStatementRecord(memory, 0, 0, "SELECT 1", "");
    WriteRowsRecord(memory, 0, 1);
    WriteSectionRecord(memory, "Upgrader");
    WriteStatementRecord(memory, 1, 1, "SELECT A FROM T WHERE A > ?", "SELECT A FROM T WHERE A > 0");
    WriteStatementRecord(memory, 2, 1, "INSERT INTO T VALUES (?)", "INSERT INTO T VALUES ('x')");
    WriteRowsRecord(memory, 2, 0);
    WriteStatementRecord(memory, 3, 0, "SELECT A FROM T", "");
    WriteRowsRecord(memory, 3, 2);
    WriteRowsRecord(memory, 1, 5);
    WriteSectionRecord(memory, "");
    WriteStatementRecord(memory, 4, 0, "SELECT COUNT(*) FROM T", "");
    return stream.Text();
}

// What a reader handed on, one line per call.
std::vector<std::string> HandedOn(const std::function<void(const TranscriptHandler&)>& read) {
    std::vector<std::string> seen;
    read({[&](const TranscriptStatement& s) {
              seen.push_back(s.text + " | " + s.expanded + " | " + std::to_string(s.rows));
          },
          [&](const std::string& name) { seen.push_back("section " + name); },
          [&](uint64_t id) { seen.push_back("ended " + std::to_string(id)); }});
    return seen;
}

class TranscriptFollowing : public ::testing::Test {
protected:
    void TearDown() override { std::filesystem::remove(path_); }

    const std::string path_ = ::testing::TempDir() + "transcript-" + std::to_string(::getpid()) + ".bin";
};

TEST_F(TranscriptFollowing, GivesWhatTheFinishedFileGivesWhileWrittenInPieces) {
    const std::string bytes = SampleTranscript();
    std::atomic<bool> finished{false};
    // Unbuffered pieces of 7 bytes: the reader meets records cut inside
    // their numbers and texts, and the file does not exist when it starts.
    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        std::FILE* file = std::fopen(path_.c_str(), "wb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        for (size_t at = 0; at < bytes.size(); at += 7) {
            std::fwrite(bytes.data() + at, 1, std::min<size_t>(7, bytes.size() - at), file);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        std::fclose(file);
        finished = true;
    });
    std::vector<std::string> followed;
    try {
        followed = HandedOn([&](const TranscriptHandler& handler) {
            FollowTranscript(path_, handler, [&] { return finished.load(); });
        });
    } catch (const std::exception& e) {
        ADD_FAILURE() << e.what();
    }
    writer.join();

    EXPECT_EQ(followed, HandedOn([&](const TranscriptHandler& handler) { ReadTranscript(path_, handler); }));
    kdvq::testing::ExpectTranscript("records handed on", followed);
}

TEST_F(TranscriptFollowing, RefusesAFinishedFileThatIsNotAWholeTranscript) {
    const std::string whole = SampleTranscript();
    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"the last record cut short", whole.substr(0, whole.size() - 3)},
        {"a record of no known kind", whole + "X"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::ofstream(path_, std::ios::binary) << c.bytes;
        EXPECT_THROW(FollowTranscript(path_, {[](const TranscriptStatement&) {}, [](const std::string&) {}, {}},
                                      [] { return true; }),
                     std::runtime_error);
    }
}

}  // namespace
}  // namespace bench
