// Any bytes as a sequence of calls with arbitrary arguments; the rules of the data after each.
#include <cfgxml/binding.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "calls/world.h"
#include "phone.h"
#include "runtime/locks.h"
#include "runtime/logging.h"
#include "support/invariants.h"

namespace {

using calls::Call;
using calls::Choices;
using calls::World;

constexpr int kMostCalls = 300;
constexpr int kCallsBetweenIndexChecks = 25;

/// Arguments from the input; odd ones now and then. An input that ends gives plain ones.
class InputChoices : public Choices {
 public:
  InputChoices(const std::uint8_t* data, std::size_t size) : data_(data, size) {}

  bool at_end() { return data_.remaining_bytes() == 0; }
  int number(int low, int high) override { return data_.ConsumeIntegralInRange(low, high); }
  bool odd() override { return number(0, 31) == 31; }
  int largest_id() override { return 12; }

  int odd_number() override {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    if (flag()) return data_.ConsumeIntegral<int>();
    return data_.PickValueInArray({kLeast, kLeast + 1, -1, 0, 1, 6, 12, 500, kMost - 1, kMost});
  }

  /// Any bytes, or lengths about the capacities of fields and buffers.
  std::string odd_text() override {
    if (flag()) return data_.ConsumeRandomLengthString(300);
    const int capacity = data_.PickValueInArray({0, 12, 16, 32, 64, 128, 130, 256, 1024, 4096});
    const auto length = static_cast<std::size_t>(capacity + number(0, 2));
    return std::string(length, data_.PickValueInArray({'a', 'Z', '5', ' ', '"', '\xff', '.'}));
  }

 private:
  FuzzedDataProvider data_;
};

/// Ends the run as a finding when a check named a rule.
void require_unbroken(const std::string& rule) { require(rule.empty(), rule.c_str()); }

/// The phone during one input: fresh data, then calls, then everything given back.
class Session {
 public:
  explicit Session(const Phone& phone) : world_(phone.on_disk(""), true) {
    world_.write_profile();
    host_.load();
    CfgTrieReloadLocalBookInfo();
  }

  ~Session() {
    world_.free_books();
    host_.stop_saving();
    host_.saver().forget();
    host_.lists().clear();
    CfgTrieReloadLocalBookInfo();
  }

  void make_call(const Call& call, Choices& choices) {
    if (choices.number(0, 63) == 63) {
      call_without_lists(call, choices);
    } else {
      call.make(world_, choices);
    }
    if (has_nameless(contacts())) world_.set_positions_kept(false);
  }

  /// A file of the library's that something else wrote.
  void damage_file(Choices& choices) {
    static constexpr const char* kFiles[] = {"/config/Phone/Contact/Contact.xml",
                                             "/config/Phone/Contact/Blacklist.xml",
                                             "/config/Phone/History/History.xml",
                                             "/config/Phone/Message/Message.xml",
                                             "/config/Phone/General/DialRule/DialNow.xml",
                                             "/config/Phone/General/DialRule/BlockOut.xml"};
    world_.write(kFiles[choices.number(0, 5)], choices.odd_text());
    world_.set_rules_kept(false);
  }

  void check_tables() {
    require_unbroken(world_.fault());
    require_unbroken(phone_test::broken_phonebook(contacts(), host_.lists().blacklist()));
    require_unbroken(phone_test::broken_history(host_.lists().history()));
    if (positions_hold()) require_unbroken(phone_test::broken_positions(contacts()));
    require(host::locks::held() == 0, "every host lock is released");
    require(host::locks::faulty_releases() == 0, "locks are released by their holders");
    require(host::locks::inversions() == 0, "locks nest as they may");
  }

  void check_index() {
    if (!world_.index_in_step()) return;
    require_unbroken(phone_test::broken_index(contacts(), books()));
  }

  /// What must hold of the whole when the calls are over, and of what comes from the files.
  void check_all() {
    check_index();
    if (positions_hold()) require_unbroken(phone_test::broken_by_reload());
    if (world_.rules_kept()) {
      require_unbroken(phone_test::broken_rules());
      require_unbroken(phone_test::broken_messages());
    }
    contact_data_sync();
    require_unbroken(phone_test::broken_membership(contacts()));
    contact_delay_save();
    host_.load();
    world_.fall_behind();
    check_tables();
    require_unbroken(phone_test::broken_membership(contacts()));
  }

 private:
  static bool has_nameless(const CONTACT_DATA_LIST_T& list) {
    return phone_test::has_nameless(list);
  }

  CONTACT_DATA_LIST_T& contacts() { return host_.lists().contacts(); }
  bool positions_hold() const { return world_.positions_kept() && world_.index_in_step(); }

  phone_test::Books books() {
    phone_test::Books books{};
    for (int number = CFGXML_BOOK_REMOTE_FIRST; number != CFGXML_BOOK_COUNT; ++number) {
      const calls::Book& book = world_.book(number);
      if (book.indexed) books[static_cast<std::size_t>(number)] = book.head;
    }
    return books;
  }

  /// As on a host that is short of memory, and has its lists later. It is short of all at once:
  /// with one list missing the other takes names that the missing one holds.
  void call_without_lists(const Call& call, Choices& choices) {
    give_lists(false);
    world_.set_lists_missing(true);
    world_.fall_behind();
    call.make(world_, choices);
    give_lists(true);
    world_.set_lists_missing(false);
    CfgTrieReloadLocalBookInfo();
    world_.set_positions_kept(true);
    world_.catch_up();
  }

  void give_lists(bool give) {
    host_.lists().give_contacts(give);
    host_.lists().give_blacklist(give);
    host_.lists().give_history(give);
  }

  host::Host& host_ = host::the_host();
  World world_;
};

const Phone& the_phone() {
  static const Phone phone;
  host::observe_log([](host::LogLevel, const std::string&) {});  // messages are formatted then
  return phone;
}

}  // namespace

/// Long sequences from the start: the fuzzer would try short inputs for hours first.
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
  static char length_control[] = "-len_control=0";
  static std::vector<char*> all(*arguments, *arguments + *count);
  all.insert(all.begin() + 1, length_control);
  *count = static_cast<int>(all.size());
  all.push_back(nullptr);
  *arguments = all.data();
  return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

/// Now and then adds bytes for further calls, at the front, where the last choices are taken from:
/// what the input led to so far stays, and sequences grow long.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  std::minstd_rand random(seed);
  const std::size_t more = 1 + random() % 400;
  if (random() % 4 != 0 || size + more > most) return LLVMFuzzerMutate(data, size, most);
  std::memmove(data + more, data, size);
  std::generate_n(data, more, [&] { return static_cast<std::uint8_t>(random()); });
  return size + more;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Phone& phone = the_phone();
  static const std::vector<Call> calls = calls::all_calls();
  const int last_call = static_cast<int>(calls.size());
  Session session(phone);
  InputChoices choices(data, size);
  for (int made = 1; made <= kMostCalls && !choices.at_end(); ++made) {
    const int chosen = choices.number(0, last_call);
    if (chosen == last_call) {
      session.damage_file(choices);
    } else {
      session.make_call(calls[static_cast<std::size_t>(chosen)], choices);
    }
    session.check_tables();
    if (made % kCallsBetweenIndexChecks == 0) session.check_index();
  }
  session.check_all();
  return 0;
}
