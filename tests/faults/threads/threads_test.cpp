// Eight threads that make operations at random, with the host's saver running. Then everything must
// be as if they had called one after the other.
//
// CFGXML_THREAD_SECONDS sets how long they call; without it each makes a fixed number of calls. The
// threads' generators start from their numbers; in which order they meet is the machine's to
// choose.
#include <cfgxml/binding.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

#include "operations/operation.h"
#include "runtime/locks.h"
#include "runtime/logging.h"
#include "runtime/shell.h"
#include "support/invariants.h"
#include "support/paths.h"
#include "support/phone.h"

namespace {

using operations::Argument;
using operations::Operation;

constexpr int kThreads = 8;
constexpr int kCallsPerThread = 1500;
constexpr const char* kFiles[] = {cfgxml::paths::kContacts, cfgxml::paths::kBlacklist,
                                  cfgxml::paths::kHistory};

/// What a careful caller passes.
class RandomChoices : public operations::Choices {
 public:
  explicit RandomChoices(unsigned seed) : random_(seed) {}

  int number(int /*plain*/, int low, int high) override {
    return std::uniform_int_distribution<int>(low, high)(random_);
  }
  bool odd(Argument /*kind*/) override { return false; }
  int odd_number() override { return 0; }
  std::optional<std::string> odd_text() override { return std::nullopt; }

 protected:
  int largest_id() override { return flag() ? 40 : 400; }

 private:
  std::minstd_rand random_;
};

/// Those that threads may make beside each other, each as often as its weight says.
const std::vector<const Operation*>& choice() {
  static const std::vector<const Operation*> choice = [] {
    std::vector<const Operation*> all;
    for (const Operation& operation : operations::all()) {
      if (operation.has(operations::kOneCaller)) continue;
      all.insert(all.end(), static_cast<std::size_t>(operation.weight), &operation);
    }
    return all;
  }();
  return choice;
}

class ThreadsTest : public phone_test::Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    // The fixture keeps every message; a minute of them is too much.
    host::observe_log([this](host::LogLevel, const std::string&) { ++messages_; });
    host::observe_commands(nullptr);
    host().saver().observe(nullptr);
    world_.start();
    host().start_saving();
  }

  void run() {
    const char* seconds = std::getenv("CFGXML_THREAD_SECONDS");
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 0);
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= kThreads; ++seed) {
      threads.emplace_back([this, seed, seconds, end] {
        RandomChoices choices(seed);
        const auto one_more = [&](int made) {
          return seconds == nullptr ? made != kCallsPerThread
                                    : std::chrono::steady_clock::now() < end;
        };
        for (int made = 0; one_more(made); ++made, ++calls_) {
          const int chosen = choices.number(0, 0, static_cast<int>(choice().size()) - 1);
          make_with_care(*choice()[static_cast<std::size_t>(chosen)], world_, choices);
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
  }

  /// What the host's blocks hold, as files; without the groups of the blacklist's entries, which
  /// are written and not read back.
  std::string as_files() {
    for (CONTACT_DATA_T& entry : blacklist().Entries) *entry.Group = '\0';
    EXPECT_EQ(contact_delay_save() + black_delay_save() + history_delay_save(), 0);
    std::string text;
    for (const char* path : kFiles) text += read(path);
    return text;
  }

  void print_figures() const {
    std::printf(
        "%ld calls by %d threads; %ld hits of searches checked, %ld messages logged, the "
        "phonebook's lock taken inside the history's %d times\n",
        calls_.load(), kThreads, world_.hits(), messages_.load(),
        host::locks::nestings(static_cast<int>(operations::Lock::kHistory),
                              static_cast<int>(operations::Lock::kPhonebook)));
  }

  operations::World world_{root(), operations::Callers::kMany};
  std::atomic<long> calls_{0};
  std::atomic<long> messages_{0};
};

TEST_F(ThreadsTest, CallsFromEightThreadsLeaveTheDataAsCallsFromOneWould) {
  run();
  EXPECT_TRUE(host().stop_saving());
  print_figures();

  EXPECT_EQ(world_.take_fault(), "");
  EXPECT_GT(world_.hits(), 0);
  EXPECT_EQ(phone_test::broken_phonebook(contacts(), blacklist()), "");
  EXPECT_EQ(phone_test::broken_membership(contacts()), "");
  EXPECT_EQ(phone_test::broken_positions(contacts()), "");
  EXPECT_EQ(phone_test::broken_history(history()), "");
  EXPECT_EQ(phone_test::broken_index(contacts(), world_.indexed_books()), "");
  EXPECT_EQ(phone_test::broken_by_reload(), "");
  EXPECT_EQ(phone_test::broken_rules(), "");
  EXPECT_EQ(phone_test::broken_messages(), "");

  // The files that the saver left are read as what memory holds.
  operations::Files saved;
  for (const char* path : kFiles) saved[path] = read(path);
  const std::string in_memory = as_files();
  for (const auto& [path, text] : saved) write(path, text);
  host().lists().clear();
  host().load();
  EXPECT_EQ(as_files(), in_memory);
}

}  // namespace
