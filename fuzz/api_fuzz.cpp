// Any bytes as a sequence of calls with arbitrary arguments; the rules of the data after each.
#include <cfgxml/binding.h>
#include <cfgxml/remote.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "calls/files.h"
#include "calls/world.h"
#include "host.h"
#include "runtime/locks.h"
#include "runtime/logging.h"
#include "runtime/shell.h"
#include "support/invariants.h"

namespace {

namespace fs = std::filesystem;

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

/// The library's root: in memory where the machine has that.
fs::path new_folder() {
  const fs::path memory = "/dev/shm";
  const fs::path parent = fs::is_directory(memory) ? memory : fs::temp_directory_path();
  std::string name = (parent / "api-fuzz-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

/// What the library asks of the shell, without one: rm -f PATH, cp -f "SOURCE" "TARGET".
int run_command(const std::string& command) {
  constexpr char kRemove[] = "rm -f ";
  constexpr char kCopy[] = "cp -f \"";
  std::error_code error;
  if (command.rfind(kRemove, 0) == 0) {
    fs::remove(command.substr(sizeof kRemove - 1), error);
    return 0;
  }
  const std::size_t middle = command.find("\" \"");
  if (command.rfind(kCopy, 0) != 0 || middle == std::string::npos || command.back() != '"') {
    std::fprintf(stderr, "a command of another form: %s\n", command.c_str());
    std::abort();
  }
  const std::string source = command.substr(sizeof kCopy - 1, middle - (sizeof kCopy - 1));
  const std::string target = command.substr(middle + 3, command.size() - middle - 4);
  return fs::copy_file(source, target, fs::copy_options::overwrite_existing, error) ? 0 : 1;
}

/// Ends the run as a finding.
void require_unbroken(const std::string& rule) {
  if (rule.empty()) return;
  std::fprintf(stderr, "broken: %s\n", rule.c_str());
  std::abort();
}

/// The phone of one input: fresh data, then calls, then everything given back.
class Phone {
 public:
  explicit Phone(const fs::path& root) : world_(root, true) {
    world_.write_profile();
    host_.open_profile(root);
    host_.load();
    CfgTrieReloadLocalBookInfo();
  }

  ~Phone() {
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
    if (host::locks::held() != 0) require_unbroken("a host lock is still taken");
    if (host::locks::faulty_releases() != 0) require_unbroken("a lock was released by no holder");
    if (host::locks::inversions() != 0) require_unbroken("locks were taken in a forbidden order");
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

const fs::path& prepare_host() {
  static const fs::path root = new_folder();
  host::the_host().bind(cfgxml_cb_init);
  host::observe_log([](host::LogLevel, const std::string&) {});  // so that messages are formatted
  host::run_commands_with(run_command);
  cfgxml_set_root(root.c_str());
  std::atexit([] {
    std::error_code error;
    fs::remove_all(root, error);
  });
  return root;
}

}  // namespace

/// The library's removals, which go through the C library.
extern "C" int system(const char* command) { return run_command(command); }

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
  static const fs::path& root = prepare_host();
  static const std::vector<Call> calls = calls::all_calls();
  const int last_call = static_cast<int>(calls.size());
  Phone phone(root);
  InputChoices choices(data, size);
  for (int made = 1; made <= kMostCalls && !choices.at_end(); ++made) {
    const int chosen = choices.number(0, last_call);
    if (chosen == last_call) {
      phone.damage_file(choices);
    } else {
      phone.make_call(calls[static_cast<std::size_t>(chosen)], choices);
    }
    phone.check_tables();
    if (made % kCallsBetweenIndexChecks == 0) phone.check_index();
  }
  phone.check_all();
  return 0;
}
