// Memory that runs out: in every exported function that allocates, every allocation is refused in
// turn, alone and together with all that follow it. Whatever happens, nothing is lost, leaked or
// left locked, and the call can be made again.
#include <cxxabi.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "runtime/locks.h"
#include "scenario.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace memory_test {

void PrintTo(const Scenario& scenario, std::ostream* out);

namespace {

int leaks_found() {
#if defined(__SANITIZE_ADDRESS__)
  return __lsan_do_recoverable_leak_check();
#else
  return 0;
#endif
}

Scenarios all_scenarios() {
  Scenarios all;
  for (const Scenarios& some : {binding_scenarios(), phonebook_scenarios(), directory_scenarios(),
                                list_scenarios(), document_scenarios()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

/// True for a text of a list of texts with "|" between them.
bool is_one_of(const std::string& texts, const std::string& text) {
  return ("|" + texts + "|").find("|" + text + "|") != std::string::npos;
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

/// What was done over all scenarios, for the line at the end.
struct Figures {
  std::set<std::string> functions;
  std::set<std::string> allocating;
  int scenarios = 0;
  int calls = 0;
  long refused = 0;
};
Figures figures;

class MemoryTest : public Stage, public ::testing::WithParamInterface<Scenario> {
 protected:
  struct Outcome {
    Result result;
    State before;
    State after;
  };

  bool leaves(unsigned what) const { return (GetParam().leaves & what) != 0; }
  bool failed(const Outcome& outcome) const {
    return !outcome.result.is_list && outcome.result.text != whole_.result.text;
  }

  Outcome play(Refuse refuse, int number);
  void expect_sound(const Outcome& outcome);
  void expect_known_state(const Outcome& outcome);
  void expect_retry(const Outcome& outcome);
  bool refuse_and_check(Refuse kind, int number);
  bool in_new_process(Refuse kind, int number);
  void refuse_each(Refuse kind);

  Outcome whole_;  // with all the memory there is
};

/// Makes the call in the prepared state.
MemoryTest::Outcome MemoryTest::play(Refuse kind, int number) {
  refuse(Refuse::kNothing);
  clear();
  GetParam().prepare(*this);
  Outcome outcome;
  outcome.before = state();
  refuse(kind, number);
  outcome.result = GetParam().call(*this);
  refuse(Refuse::kNothing);
  outcome.after = state();
  ++figures.calls;
  figures.refused += refused();
  return outcome;
}

/// The blocks and the files are as before the call or as after it, each of them whole.
void MemoryTest::expect_known_state(const Outcome& outcome) {
  const bool undone = failed(outcome);
  const State& due = undone ? whole_.before : whole_.after;
  const State& other = undone ? whole_.after : whole_.before;
  const bool either = leaves(undone ? kFileReplaced : kSaveDropped);
  const auto holds = [](const State& state, const std::string& path, const std::string& text) {
    const auto file = state.files.find(path);
    return file != state.files.end() && file->second == text;
  };

  if (!leaves(kOwnBlocks)) EXPECT_TRUE(outcome.after.blocks == due.blocks) << "other blocks";
  for (const auto& [path, text] : outcome.after.files) {
    EXPECT_TRUE(holds(due, path, text) || (either && holds(other, path, text)))
        << path << " holds:\n"
        << text;
  }
  for (const auto& file : due.files) {
    EXPECT_TRUE(outcome.after.files.count(file.first) != 0 ||
                (either && other.files.count(file.first) == 0))
        << file.first << " is missing";
  }
}

void MemoryTest::expect_sound(const Outcome& outcome) {
  const Scenario& scenario = GetParam();
  EXPECT_EQ(::host::locks::held(), 0);
  if (outcome.result.is_list) {
    EXPECT_TRUE(is_part_of(outcome.result.nodes, whole_.result.nodes)) << "not a part of the list";
  } else if (failed(outcome)) {
    EXPECT_TRUE(is_one_of(scenario.failure, outcome.result.text)) << outcome.result.text;
  }
  expect_known_state(outcome);
  if (!leaves(kIndexStale) && !leaves(kOwnIndex)) expect_contacts_indexed();
  if (scenario.check != nullptr) scenario.check(*this);
}

/// Memory is back: the same call does what it would have done.
void MemoryTest::expect_retry(const Outcome& outcome) {
  if (!failed(outcome) && !outcome.result.is_list) return;
  if (leaves(kFileReplaced)) return;
  const Result again = GetParam().call(*this);
  EXPECT_EQ(again.text, whole_.result.text) << "when called again";
  EXPECT_TRUE(state().blocks == whole_.after.blocks) << "when called again";
}

/// True when an allocation was refused.
bool MemoryTest::refuse_and_check(Refuse kind, int number) {
  SCOPED_TRACE("allocation " + std::to_string(number) +
               (kind == Refuse::kAllFrom ? " and all behind it" : ""));
  clear();
  const int kept = blocks_in_use();
  const Outcome outcome = play(kind, number);
  if (refused() == 0) return false;
  if (leaves(kFreshProcess)) whole_ = play(Refuse::kNothing, 0);
  expect_sound(outcome);
  if (!leaves(kFreshProcess)) expect_retry(outcome);
  clear();
  const int lost = leaves(kBlockLost) ? 1 : 0;
  if (!leaves(kMemoryKept)) EXPECT_LE(blocks_in_use(), kept + lost) << "leaked";
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
  if (ended == kNothingRefused) return false;
  ++figures.calls;
  ++figures.refused;
  return true;
}

void MemoryTest::refuse_each(Refuse kind) {
  for (int number = 1; !HasFailure(); ++number) {
    const bool any =
        leaves(kFreshProcess) ? in_new_process(kind, number) : refuse_and_check(kind, number);
    if (!any) {
      EXPECT_GT(number, 1) << "it allocates nothing";
      return;
    }
  }
}

TEST_P(MemoryTest, LeavesNothingHalfDone) {
  const Scenario& scenario = GetParam();
  ++figures.scenarios;
  figures.functions.insert(scenario.function);
  if (!leaves(kFreshProcess)) {
    whole_ = play(Refuse::kNothing, 0);
    expect_sound(whole_);
    if (scenario.failure == nullptr) {
      EXPECT_EQ(asked(), 0) << "it allocates";
      return;
    }
    EXPECT_NE(whole_.result.text, whole_.result.is_list ? "" : scenario.failure);
  }
  figures.allocating.insert(scenario.function);
  if (!HasFailure()) refuse_each(Refuse::kOne);
  if (!HasFailure()) refuse_each(Refuse::kAllFrom);
  EXPECT_EQ(leaks_found(), 0);
}

std::string name_of(const ::testing::TestParamInfo<Scenario>& info) {
  std::string name = info.param.function;
  if (info.param.story[0] != '\0') name = name + "_" + info.param.story;
  return name;
}

INSTANTIATE_TEST_SUITE_P(Exported, MemoryTest, ::testing::ValuesIn(all_scenarios()), name_of);

/// Every exported function has a scenario, and every scenario an exported function.
TEST(MemoryTableTest, NamesEveryExportedFunction) {
  std::set<std::string> exported;
  std::ifstream file(CFGXML_EXPORTED_NAMES);
  for (std::string name; std::getline(file, name);) {
    if (name.empty() || name[0] == '#') continue;
    int status = -1;
    char* plain = abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status);
    if (plain != nullptr) name = std::string(plain).substr(0, std::string(plain).find('('));
    std::free(plain);
    exported.insert(name);
  }
  std::set<std::string> named;
  for (const Scenario& scenario : all_scenarios()) named.insert(scenario.function);
  EXPECT_EQ(named, exported);
}

class Report : public ::testing::Environment {
 public:
  /// Thousands of small files: in memory where the system has a folder for that.
  void SetUp() override {
    if (::access("/dev/shm", W_OK) == 0) ::setenv("TMPDIR", "/dev/shm", 0);
  }
  void TearDown() override {
    std::printf(
        "memory: %zu functions, of which %zu allocate; %d scenarios, %d calls, "
        "%ld allocations refused\n",
        figures.functions.size(), figures.allocating.size(), figures.scenarios, figures.calls,
        figures.refused);
  }
};
const auto* const report = ::testing::AddGlobalTestEnvironment(new Report);

}  // namespace

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.function; }

}  // namespace memory_test
