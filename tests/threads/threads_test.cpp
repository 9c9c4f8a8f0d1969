// Eight threads that call the interface at random, with the host's saver running. Then everything
// must be as if they had called one after the other.
//
// CFGXML_THREAD_SECONDS sets how long they call; without it each makes a fixed number of calls.
// Each thread has a generator of its own with a fixed seed; in which order the threads meet is the
// machine's to choose.
#include <cfgxml/remote.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

#include "calls/world.h"
#include "runtime/locks.h"
#include "runtime/logging.h"
#include "runtime/shell.h"
#include "support/invariants.h"
#include "support/phone.h"

namespace {

using calls::Call;
using calls::Choices;
using calls::World;

constexpr int kThreads = 8;
constexpr int kCallsPerThread = 1500;

/// What a careful caller passes.
class RandomChoices : public Choices {
 public:
  explicit RandomChoices(unsigned seed) : random_(seed) {}

  int number(int low, int high) override {
    return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
  }
  bool odd() override { return false; }
  int odd_number() override { return 0; }
  std::string odd_text() override { return ""; }
  int largest_id() override { return flag() ? 40 : 400; }

 private:
  std::minstd_rand random_;
};

/// One thread: its choices, and how often it made each call.
class Caller {
 public:
  Caller(World& world, const std::vector<Call>& calls, unsigned seed)
      : world_(world), calls_(calls), choices_(seed), made_(calls.size()) {
    for (const Call& call : calls) weights_.push_back(call.weight + total());
  }

  void make_one() {
    const int chosen = choices_.number(0, total() - 1);
    const auto place = std::upper_bound(weights_.begin(), weights_.end(), chosen);
    const auto index = static_cast<std::size_t>(place - weights_.begin());
    calls_[index].make(world_, choices_);
    ++made_[index];
  }

  const std::vector<long>& made() const { return made_; }
  long all_made() const { return std::accumulate(made_.begin(), made_.end(), 0L); }

 private:
  int total() const { return weights_.empty() ? 0 : weights_.back(); }

  World& world_;
  const std::vector<Call>& calls_;
  RandomChoices choices_;
  std::vector<int> weights_;  // each with those before it
  std::vector<long> made_;
};

class ThreadsTest : public phone_test::Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    // The fixture keeps every message; a minute of them is too much.
    host::observe_log([this](host::LogLevel, const std::string&) { ++messages_; });
    host::observe_commands(nullptr);
    host().saver().observe(nullptr);
    world_ = std::make_unique<World>(root(), false);
    world_->write_profile();
    set_accounts();
    host().load();
    CfgTrieReloadLocalBookInfo();
    host().start_saving();
  }

  void TearDown() override {
    world_->free_books();
    Phone::TearDown();
  }

  void run() {
    for (unsigned i = 0; i != kThreads; ++i) {
      callers_.push_back(std::make_unique<Caller>(*world_, calls_, 1 + i));
    }
    const char* seconds = std::getenv("CFGXML_THREAD_SECONDS");
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 0);
    std::vector<std::thread> threads;
    for (const auto& caller : callers_) {
      threads.emplace_back([&caller, seconds, end] {
        for (int i = 0; seconds == nullptr && i != kCallsPerThread; ++i) caller->make_one();
        while (std::chrono::steady_clock::now() < end) caller->make_one();
      });
    }
    for (std::thread& thread : threads) thread.join();
  }

  phone_test::Books books() {
    phone_test::Books books{};
    for (int number = CFGXML_BOOK_REMOTE_FIRST; number != CFGXML_BOOK_COUNT; ++number) {
      const calls::Book& book = world_->book(number);
      if (book.indexed) books[static_cast<std::size_t>(number)] = book.head;
    }
    return books;
  }

  void print_figures() const {
    long all = 0;
    for (std::size_t call = 0; call != calls_.size(); ++call) {
      long made = 0;
      for (const auto& caller : callers_) made += caller->made()[call];
      std::printf("%8ld %s\n", made, calls_[call].kind);
      all += made;
    }
    for (const auto& caller : callers_) std::printf("%8ld by one thread\n", caller->all_made());
    std::printf(
        "%8ld calls by %d threads; %ld hits of searches checked, %ld messages logged, the "
        "phonebook's lock taken inside the history's %d times\n",
        all, kThreads, world_->hits(), messages_.load(),
        host::locks::nestings(calls::kHistoryLock, calls::kPhonebookLock));
  }

  World& world() { return *world_; }

 private:
  static void set_accounts() {
    set_item(0, 4, "200");
    set_item(0, 16, "pbx.example.com");
    set_item(1, 4, "201");
    set_item(1, 16, "pbx.example.com");
  }

  std::vector<Call> calls_ = calls::all_calls();
  std::unique_ptr<World> world_;
  std::vector<std::unique_ptr<Caller>> callers_;
  std::atomic<long> messages_{0};
};

/// What a file holds of a record, by the record's id. The contacts' file has them by groups, so
/// that their order is no matter.
using Stored = std::map<int, std::string>;

std::string joined(std::initializer_list<std::string> texts) {
  std::string line;
  for (const std::string& text : texts) line += text + "|";
  return line;
}

Stored stored(const CONTACT_DATA_T* contacts, std::size_t capacity, bool with_group) {
  Stored result;
  for (const CONTACT_DATA_T* contact = contacts; contact != contacts + capacity; ++contact) {
    if (contact->Id < 1) break;
    result[contact->Id] =
        joined({std::to_string(contact->Line), contact->DisplayName, contact->OfficeNumber,
                contact->MobileNumber, contact->OtherNumber, with_group ? contact->Group : "",
                contact->Ring, contact->Photo});
  }
  return result;
}

Stored stored(const GROUP_DATA_T (&groups)[CFGXML_GROUP_CAPACITY]) {
  Stored result;
  for (const GROUP_DATA_T& group : groups) {
    if (group.Id < 1) break;
    result[group.Id] = joined({group.Name, group.Ring, group.Description});
  }
  return result;
}

Stored stored(const HISTORY_DATA_T (&calls)[CFGXML_HISTORY_CAPACITY]) {
  Stored result;
  for (const HISTORY_DATA_T& call : calls) {
    if (call.ID < 1) break;
    result[call.ID] =
        joined({std::to_string(call.CallID), std::to_string(call.Type), std::to_string(call.Status),
                call.Date, call.Time, call.LocalSipName, call.LocalSipServer,
                std::to_string(call.LocalSipPort), call.RemoteSipName, call.RemoteSipServer,
                call.RemoteDisplayName, std::to_string(call.RemoteSipPort), call.CallDuration});
  }
  return result;
}

/// What the host's blocks hold and the files should.
struct Profile {
  Stored groups, contacts, blacklist, calls;

  explicit Profile(host::Lists& lists)
      : groups(stored(lists.contacts().Groups)),
        contacts(stored(lists.contacts().Contacts, CFGXML_CONTACT_CAPACITY, true)),
        blacklist(stored(lists.blacklist().Entries, CFGXML_BLACKLIST_CAPACITY, false)),
        calls(stored(lists.history().Records)) {}
};

bool ids_ascend(const HISTORY_DATA_LIST& history) {
  const auto* end = std::find_if(std::begin(history.Records), std::end(history.Records),
                                 [](const HISTORY_DATA_T& call) { return call.ID < 1; });
  return std::is_sorted(history.Records, end, [](const HISTORY_DATA_T& a, const HISTORY_DATA_T& b) {
    return a.ID < b.ID;
  });
}

TEST_F(ThreadsTest, CallsFromEightThreadsLeaveTheDataAsCallsFromOneWould) {
  run();
  EXPECT_TRUE(host().stop_saving());
  print_figures();

  EXPECT_EQ(world().fault(), "");
  EXPECT_GT(world().hits(), 0);
  EXPECT_EQ(phone_test::broken_phonebook(contacts(), blacklist()), "");
  EXPECT_EQ(phone_test::broken_membership(contacts()), "");
  EXPECT_EQ(phone_test::broken_positions(contacts()), "");
  EXPECT_EQ(phone_test::broken_history(history()), "");
  EXPECT_TRUE(ids_ascend(history()));
  EXPECT_EQ(phone_test::broken_index(contacts(), books()), "");
  EXPECT_EQ(phone_test::broken_by_reload(), "");
  EXPECT_EQ(phone_test::broken_rules(), "");
  EXPECT_EQ(phone_test::broken_messages(), "");

  const Profile before(host().lists());
  std::printf("%8zu contacts, %zu groups, %zu blacklist entries, %zu calls at the end\n",
              before.contacts.size(), before.groups.size(), before.blacklist.size(),
              before.calls.size());
  host().lists().clear();
  host().load();
  const Profile after(host().lists());
  EXPECT_EQ(before.groups, after.groups);
  EXPECT_EQ(before.contacts, after.contacts);
  EXPECT_EQ(before.blacklist, after.blacklist);
  EXPECT_EQ(before.calls, after.calls);
}

}  // namespace
