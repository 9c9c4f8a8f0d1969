// The catalogue of operations: what the library can be asked to do, every exported function once,
// and what each of them owes its caller. The drivers in tests/faults and fuzz/api_fuzz.cpp make
// them while memory runs out, the disk fails, other threads call, or arguments are no good.
#pragma once

#include <string>
#include <vector>

#include "operations/world.h"

namespace operations {

/// What a call returned: a number or a text as text, a list as the bytes of its nodes; and the
/// record that it was given to fill, before and after.
struct Result {
  std::string text;
  std::vector<std::string> nodes;
  bool is_list = false;
  std::string given;
  std::string record;
  bool operator==(const Result& other) const {
    return text == other.text && nodes == other.nodes && record == other.record;
  }
};

/// The host's blocks that an operation asks for.
enum Blocks : unsigned { kContacts = 1, kBlacklist = 2, kHistory = 4 };

/// What else drivers have to know of an operation.
enum Traits : unsigned {
  // What it may leave after a failure.
  kSaveDropped = 1,    // the change stays when its save fails, and the result does not tell
  kFileReplaced = 2,   // the file may be the new one though the call failed
  kIndexStale = 4,     // contacts changed, and the index did not
  kIndexInPart = 8,    // records may be missing in the index as a whole
  kMemoryKept = 16,    // cells of the index stay for the next strings
  kBlockLost = 32,     // the XML library may lose a block of its own
  kFreshProcess = 64,  // what it allocates once it keeps for good
  kBlocksMixed = 128,  // the blocks may be neither as before nor as after
  // What its callers have to do.
  kHoldLock = 256,    // hold its lock around it: it reads, then writes what it read
  kOwnBooks = 512,    // see World::books_mutex()
  kOneCaller = 1024,  // be one thread
  // What it does not do.
  kQuiet = 2048,  // log that it refuses
  kNamed = 4096,  // give the same without a block that it only looks names up in
};

/// A list ends early when memory is out.
inline constexpr char kEndsEarly[] = "list";

struct Operation {
  const char* name;  // of the exported function
  /// Makes one call through World::call, looks at what it got, and frees it.
  Result (*call)(World& world, Choices& choices);

  const char* story = "";                   // tells the operations of one function apart
  void (*prepare)(World& world) = nullptr;  // what it needs beyond World::start()
  Lock lock = Lock::kNone;                  // the lock that it takes once, or its caller holds
  bool callers_lock = false;                // it is called with the lock held
  const char* success = "0";                // with plain choices
  const char* refused = "-1";               // for NULL or an empty text; a list is empty
  const char* out_of_range = "-1";          // for an id below 1, or a number out of its range
  const char* unknown = "-1";               // for what there is not
  const char* others = "";                  // more, "|" between them; "*" for any
  unsigned blocks = 0;                      // those without which it can not do
  const char* without_blocks = "-1";        // then; a list is empty
  const char* without_memory = nullptr;     // results then, kEndsEarly; nullptr: allocates none
  int indexes = -1;                         // the book into whose index it puts strings
  unsigned traits = 0;
  int weight = 2;  // how often random callers make it; 0: never

  Operation(const char* function, Result (*make)(World&, Choices&)) : name(function), call(make) {}

  // Rows read as sentences: each of these gives the operation with something changed.
  Operation with_story(const char* text) const { return with(&Operation::story, text); }
  Operation after(void (*first)(World&)) const { return with(&Operation::prepare, first); }
  Operation under(Lock taken) const { return with(&Operation::lock, taken); }
  Operation in_callers(Lock held) const { return under(held).with(&Operation::callers_lock, true); }
  Operation gives(const char* result) const { return with(&Operation::success, result); }
  /// Whatever is wrong with the arguments, and without blocks.
  Operation fails(const char* result) const {
    return refuses(result).absent(result).with(&Operation::without_blocks, result);
  }
  Operation refuses(const char* result) const { return with(&Operation::refused, result); }
  Operation unknown_gives(const char* result) const { return with(&Operation::unknown, result); }
  Operation absent(const char* result) const {
    return unknown_gives(result).with(&Operation::out_of_range, result);
  }
  Operation also(const char* results) const { return with(&Operation::others, results); }
  Operation needs(unsigned of_host) const { return with(&Operation::blocks, blocks | of_host); }
  Operation lacks(const char* result) const { return with(&Operation::without_blocks, result); }
  Operation runs_out(const char* results) const {
    return with(&Operation::without_memory, results);
  }
  Operation lists() const { return runs_out(kEndsEarly); }
  Operation saves() const { return runs_out("-1").is(kSaveDropped); }
  Operation indexes_in(int book) const { return with(&Operation::indexes, book).is(kMemoryKept); }
  Operation is(unsigned added) const { return with(&Operation::traits, traits | added); }
  Operation often(int times) const { return with(&Operation::weight, times); }
  Operation never_at_random() const { return often(0); }

  bool has(unsigned trait) const { return (traits & trait) != 0; }
  /// Function and story, as a name for a test.
  std::string title() const;

 private:
  template <typename Value>
  Operation with(Value Operation::*field, Value value) const {
    Operation changed = *this;
    changed.*field = value;
    return changed;
  }
};

using Operations = std::vector<Operation>;

/// Operations that have the lock, the blocks and the traits in common, beside those of their own.
Operations family(Lock lock, unsigned blocks, unsigned traits, Operations operations);
Operations in_callers_lock(Operations operations);
Operations joined(const std::vector<Operations>& families);

Operations binding_operations();
Operations phonebook_operations();
Operations phonebook_file_operations();
Operations history_operations();
Operations list_operations();       // dial rules, messages, notifications, time zones
Operations directory_operations();  // the search, remote books, BroadSoft lists
Operations document_operations();   // CSV files, the XML browser

/// All of them.
const Operations& all();

/// Makes an operation as a careful caller does, beside others or alone, and fails the world when it
/// gave what it may not give.
void make_with_care(const Operation& operation, World& world, Choices& choices);

/// True for a text of a list of texts with "|" between them.
bool is_one_of(const std::string& texts, const std::string& text);

}  // namespace operations
