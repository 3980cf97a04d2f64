#pragma once
// The transcript of a run: every statement the engine ran on the
// process's connections, with the values bound to it, how many rows it
// gave back and how many it changed, and marks where each upgrader began
// and ended. It is written to a file as the run goes (so that it does not
// weigh on the run's memory) and read back to replay the run
// (transcript_reader.h).
#include <cstdint>
#include <string>

namespace bench {

// Starts recording every statement of every connection opened from now
// on in this process (through the engine's auto-extension hook).
void StartRecording(const std::string& path);
// Marks the start of an upgrader's work; an empty name marks its end.
// Each mark flushes the file, for a reader following it as it grows.
void MarkSection(const std::string& name);
// Flushes and closes the transcript file.
void StopRecording();
// Rows changed by INSERT, UPDATE and DELETE statements so far.
int64_t RecordedRowChanges();
// The engine's time in the history's per-user UPDATEs so far.
double RecordedHistoryUpdateSeconds();

// The statements that fill the history's user columns: one pair per user,
// each over the whole table. They are measured on their own.
bool IsHistoryUserUpdate(const std::string& text);
// Of those, the pair run for each user (not the last one, which gives the
// rows still without a user to the first user).
bool IsPerUserHistoryUpdate(const std::string& text);

}  // namespace bench
