// The calls that are made while memory runs out, as tables: one per subsystem.
#pragma once

#include <vector>

#include "stage.h"

namespace memory_test {

/// What a call leaves besides its result.
enum Leaves : unsigned {
  kNothingElse = 0,
  kSaveDropped = 1,    // a change whose save may fail without a word: the file may be the old one
  kIndexStale = 2,     // the contacts are not indexed again by the call
  kOwnIndex = 4,       // the index has its own check
  kMemoryKept = 8,     // cells of the index stay for the next strings
  kFileReplaced = 16,  // the file may be the new one though the call failed
  kBlockLost = 64,     // the XML library may lose a block of its own (see memory_test.cpp)
  kOwnBlocks = 128,    // the blocks have their own check
  kFreshProcess = 32,  // what the call allocates once it keeps for good: each call in a new process
};

/// A call in a prepared state.
struct Scenario {
  const char* function;
  const char* story;  // tells the scenarios of a function apart
  void (*prepare)(Stage& stage);
  Result (*call)(Stage& stage);
  const char* failure;  // the documented result when memory is out, or several with "|" between
                        // them; a list ends early instead; nullptr: the call allocates nothing
  unsigned leaves = kNothingElse;
  void (*check)(Stage& stage) = nullptr;  // whatever else must hold after the call
};

using Scenarios = std::vector<Scenario>;

Scenarios binding_scenarios();
Scenarios phonebook_scenarios();
Scenarios directory_scenarios();  // search, remote books, BroadSoft lists
Scenarios list_scenarios();       // dial rules, messages, time zones, notifications, history
Scenarios document_scenarios();   // CSV files, the XML browser

/// A list ends early.
inline constexpr char kEndsEarly[] = "list";

/// A profile with a few contacts in two groups, three blacklist entries and two calls, loaded and
/// indexed; saving is immediate.
void with_phonebook(Stage& stage);

}  // namespace memory_test
