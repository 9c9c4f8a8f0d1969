// Memory that runs out: in every operation of the catalogue, every allocation is refused in turn,
// alone and together with all that follow it. Whatever happens, nothing is lost, leaked or left
// locked, and the operation can be made again.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "faults/memory/allocations.h"
#include "operations/operation.h"
#include "runtime/locks.h"
#include "support/invariants.h"
#include "support/phone.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

/// Nothing here is about what is on the disk, and thousands of files are written.
extern "C" int fsync(int /*descriptor*/) { return 0; }

namespace memory_test {
namespace {

using namespace operations;  // NOLINT(google-build-using-namespace): they are its subject

int leaks_found() {
#if defined(__SANITIZE_ADDRESS__)
  return __lsan_do_recoverable_leak_check();
#else
  return 0;
#endif
}

/// The XML library gets its elements in blocks of 4 KB, and loses the one at hand when the table of
/// the blocks has to grow and there is no memory for that; and it loses the 1000 bytes in which it
/// words an error when there is no memory to keep them. From outside there is nothing to free.
void ignore_lost([[maybe_unused]] const void* block) {
#if defined(__SANITIZE_ADDRESS__)
  __lsan_ignore_object(block);
#endif
}

/// Every allocation alone; those with all that follow in steps of three, unless everything is asked
/// for.
int step_of(Refuse kind) {
  static const bool every_one = std::getenv("CFGXML_TEST_EVERYTHING") != nullptr;
  return kind == Refuse::kOne || every_one ? 1 : 3;
}

bool is_part_of(const std::vector<std::string>& part, const std::vector<std::string>& whole) {
  auto from = whole.begin();
  for (const std::string& node : part) {
    from = std::find(from, whole.end(), node);
    if (from == whole.end()) return false;
    ++from;
  }
  return true;
}

/// Strings that take every free cell of the index, so that the next string of a book needs memory.
/// They stand in a book of their own, and with a record of no place in the result table.
class Fillers {
 public:
  void fill(int book) {
    // Each book has its own cells for strings, and all share those for nodes. As long as there are
    // more of the first in the fillers' book, what runs out there are the nodes.
    static const bool reserved = [this] {
      for (int i = 0; i != 4096; ++i) put(kOwnBook, kShared, Refuse::kNothing);
      take();
      return true;
    }();
    put(book, kShared, Refuse::kNothing);
    while (reserved && put(book, kShared, Refuse::kAllFrom)) {
    }
    for (int number = 0; put(kOwnBook, kShared + std::to_string(number), Refuse::kAllFrom);) {
      ++number;
    }
  }
  void take() {
    const TRIE_INFO_T info{kOwnBook, &record_};
    for (const std::string& text : texts_) TrieDecreaseInfo(text.c_str(), &info);
    texts_.clear();
  }

 private:
  static constexpr int kOwnBook = CFGXML_BOOK_COUNT - 2;
  static constexpr const char* kShared = "~";

  bool put(int book, const std::string& text, Refuse refuse) {
    const TRIE_INFO_T info{book, &record_};
    const Watch watch(refuse, 1);
    if (TrieIncreaseInfo(text.c_str(), &info) != 0) return false;
    texts_.push_back(text);
    return true;
  }

  static inline std::int32_t record_ = -1;
  std::vector<std::string> texts_;
};

/// What was done over all operations, for the line at the end.
struct Figures {
  int operations = 0;
  int allocating = 0;
  int calls = 0;
  long refused = 0;
};
Figures figures;

class MemoryTest : public phone_test::Phone, public ::testing::WithParamInterface<Operation> {
 protected:
  struct Outcome {
    Result result;
    State before;
    State after;
  };

  const Operation& operation() const { return GetParam(); }
  bool failed(const Outcome& outcome) const {
    return !outcome.result.is_list && outcome.result.text != whole_.result.text;
  }

  Result make() {
    const HostLock hold(operation().callers_lock ? operation().lock : Lock::kNone);
    return operation().call(world_, plain_);
  }
  Outcome play(Refuse refuse, int number);
  void clear();
  void expect_sound(const Outcome& outcome);
  void expect_known_state(const Outcome& outcome);
  void expect_retry(const Outcome& outcome);
  bool refuse_and_check(Refuse kind, int number);
  bool in_new_process(Refuse kind, int number);
  void refuse_each();

  void TearDown() override {
    clear();
    Phone::TearDown();
  }

  World world_{root(), Callers::kOne};
  PlainChoices plain_;
  Fillers fillers_;
  bool index_full_ = false;
  int asked_ = 0;
  int refused_ = 0;
  Outcome whole_;  // with all the memory there is
};

void MemoryTest::clear() {
  fillers_.take();
  plain_.forget_texts();
  world_.clear();
  forget_log();
}

/// Makes the operation in its prepared state; with a full index nothing is written.
MemoryTest::Outcome MemoryTest::play(Refuse kind, int number) {
  fillers_.take();
  world_.start();
  if (operation().prepare != nullptr) operation().prepare(world_);
  if (index_full_) {
    contact_save_init(1);
    black_save_init(1);
    fillers_.fill(operation().indexes);
  }
  Outcome outcome;
  outcome.before = world_.state();
  std::optional<Watch> watch;
  world_.watch([&] { watch.emplace(kind, number); },
               [&] {
                 asked_ = watch->asked();
                 refused_ = watch->refused();
                 watch.reset();
               });
  outcome.result = make();
  world_.watch(nullptr, nullptr);
  outcome.after = world_.state();
  ++figures.calls;
  figures.refused += refused_;
  return outcome;
}

/// The blocks and the files are as before the call or as after it, each of them whole.
void MemoryTest::expect_known_state(const Outcome& outcome) {
  const bool undone = failed(outcome);
  const State& due = undone ? whole_.before : whole_.after;
  State now = outcome.after;
  if (operation().has(kBlocksMixed)) now.blocks = due.blocks;
  if (operation().has(undone ? kFileReplaced : kSaveDropped)) {
    const State& other = undone ? whole_.after : whole_.before;
    for (const auto& [path, text] : due.files) {
      const auto file = other.files.find(path);
      const bool is_other = file != other.files.end() && now.files[path] == file->second;
      if (is_other || (file == other.files.end() && now.files[path].empty()))
        now.files[path] = text;
    }
    for (const auto& [path, text] : other.files) {
      if (due.files.count(path) == 0 && now.files[path] == text) now.files.erase(path);
    }
  }
  EXPECT_EQ(changes(due, now), "");
}

void MemoryTest::expect_sound(const Outcome& outcome) {
  EXPECT_EQ(::host::locks::held(), 0);
  EXPECT_EQ(world_.take_fault(), "");
  if (outcome.result.is_list) {
    EXPECT_TRUE(is_part_of(outcome.result.nodes, whole_.result.nodes)) << "not a part of the list";
  } else if (failed(outcome)) {
    EXPECT_TRUE(is_one_of(operation().without_memory, outcome.result.text)) << outcome.result.text;
  } else if (!operation().has(kNamed)) {
    EXPECT_TRUE(outcome.result.record == whole_.result.record) << "another record";
  }
  expect_known_state(outcome);
  if (operation().has(kIndexStale)) return;
  const bool in_part = operation().has(kIndexInPart);
  fillers_.take();
  EXPECT_EQ(phone_test::broken_index(contacts(), world_.indexed_books(), in_part), "");
  if (!in_part) EXPECT_EQ(phone_test::broken_positions(contacts()), "");
}

/// Memory is back: the same operation does what it would have done.
void MemoryTest::expect_retry(const Outcome& outcome) {
  if (!failed(outcome) || operation().has(kFileReplaced)) return;
  const Result again = make();
  EXPECT_EQ(again.text, whole_.result.text) << "when called again";
  EXPECT_TRUE(world_.state().blocks == whole_.after.blocks) << "when called again";
}

/// True when an allocation was refused.
bool MemoryTest::refuse_and_check(Refuse kind, int number) {
  SCOPED_TRACE("allocation " + std::to_string(number) +
               (kind == Refuse::kAllFrom ? " and all that follow" : "") +
               (index_full_ ? ", the index full" : ""));
  clear();
  const int kept = blocks_in_use();
  const Outcome outcome = play(kind, number);
  if (refused_ == 0) return false;
  if (operation().has(kFreshProcess)) whole_ = play(Refuse::kNothing, 0);
  expect_sound(outcome);
  if (!operation().has(kFreshProcess)) expect_retry(outcome);
  clear();
  if (operation().has(kBlockLost)) {
    EXPECT_LE(blocks_in_use(), kept + 1) << "leaked";
    forget_blocks(ignore_lost);
  } else if (!operation().has(kMemoryKept)) {
    EXPECT_EQ(blocks_in_use(), kept) << "leaked";
  }
  return true;
}

/// The same in a process that has not made the call yet.
bool MemoryTest::in_new_process(Refuse kind, int number) {
  enum Ended : int { kNothingRefused, kSound, kUnsound };
  std::fflush(nullptr);
  const pid_t process = ::fork();
  if (process == 0) {
    const bool any = refuse_and_check(kind, number);
    std::fflush(nullptr);
    ::_exit(HasFailure() ? kUnsound : any ? kSound : kNothingRefused);
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  const int ended = WIFEXITED(status) ? WEXITSTATUS(status) : kUnsound;
  EXPECT_NE(ended, kUnsound) << "allocation " << number;
  figures.refused += ended == kSound ? 1 : 0;
  return ended != kNothingRefused;
}

void MemoryTest::refuse_each() {
  const bool fresh = operation().has(kFreshProcess);
  if (!fresh) {
    whole_ = play(Refuse::kNothing, 0);
    expect_sound(whole_);
    if (operation().without_memory == nullptr) {
      EXPECT_EQ(asked_, 0) << "it allocates";
      return;
    }
  }
  for (const Refuse kind : {Refuse::kOne, Refuse::kAllFrom}) {
    for (int number = 1; !HasFailure(); number += step_of(kind)) {
      if (fresh ? in_new_process(kind, number) : refuse_and_check(kind, number)) continue;
      const bool has_cells = operation().indexes >= 0 && !index_full_;
      EXPECT_TRUE(number > 1 || has_cells) << "it allocates nothing";
      break;
    }
  }
}

TEST_P(MemoryTest, LeavesNothingHalfDone) {
  ++figures.operations;
  figures.allocating += operation().without_memory != nullptr ? 1 : 0;
  refuse_each();
  if (operation().indexes >= 0) {
    index_full_ = true;
    refuse_each();
  }
  EXPECT_EQ(leaks_found(), 0);
}

INSTANTIATE_TEST_SUITE_P(Exported, MemoryTest, ::testing::ValuesIn(all()),
                         [](const auto& info) { return info.param.title(); });

class Report : public ::testing::Environment {
 public:
  void TearDown() override {
    std::printf("memory: %d operations, of which %d allocate; %d calls, %ld allocations refused\n",
                figures.operations, figures.allocating, figures.calls, figures.refused);
  }
};
const auto* const report = ::testing::AddGlobalTestEnvironment(new Report);

}  // namespace
}  // namespace memory_test

namespace operations {
void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.title(); }
}  // namespace operations
