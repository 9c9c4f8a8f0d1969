// Any bytes as a sequence of operations with arbitrary arguments; the rules of the data after each.
#include <cfgxml/binding.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "operations/operation.h"
#include "phone.h"
#include "runtime/locks.h"
#include "support/invariants.h"
#include "support/paths.h"

namespace {

using operations::Argument;
using operations::Operation;
using operations::World;
namespace paths = cfgxml::paths;

constexpr int kMostCalls = 300;
constexpr int kCallsBetweenIndexChecks = 25;

/// Arguments from the input; odd ones now and then. An input that ends gives plain ones.
class InputChoices : public operations::Choices {
 public:
  InputChoices(const std::uint8_t* data, std::size_t size) : data_(data, size) {}

  bool at_end() { return data_.remaining_bytes() == 0; }
  int number(int plain, int low, int high) override {
    return at_end() ? plain : data_.ConsumeIntegralInRange(low, high);
  }
  bool odd(Argument /*kind*/) override { return number(0, 0, 31) == 31; }

  int odd_number() override {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    if (flag()) return data_.ConsumeIntegral<int>();
    return data_.PickValueInArray({kLeast, kLeast + 1, -1, 0, 1, 6, 12, 500, kMost - 1, kMost});
  }

  /// None, any bytes, or lengths about the capacities of fields and buffers.
  std::optional<std::string> odd_text() override {
    if (number(1, 0, 3) == 0) return std::nullopt;
    if (flag()) return data_.ConsumeRandomLengthString(300);
    const int capacity = data_.PickValueInArray({0, 12, 16, 32, 64, 128, 130, 256, 1024, 4096});
    const auto length = static_cast<std::size_t>(capacity + number(0, 0, 2));
    return std::string(length, data_.PickValueInArray({'a', 'Z', '5', ' ', '"', '\xff', '.'}));
  }

 private:
  FuzzedDataProvider data_;
};

/// As on a host that is short of memory, and has its lists later. It is short of all at once: with
/// one list missing the other takes names that the missing one holds.
void make_without_blocks(const Operation& operation, World& world, InputChoices& choices) {
  world.set_blocks_missing(true);
  world.fall_behind();
  make_with_care(operation, world, choices);
  world.set_blocks_missing(false);
  CfgTrieReloadLocalBookInfo();
  world.set_positions_kept(true);
  world.catch_up();
}

/// A file of the library's that something else wrote.
void damage_file(World& world, InputChoices& choices) {
  static constexpr const char* kFiles[] = {paths::kContacts, paths::kBlacklist, paths::kHistory,
                                           paths::kMessages, paths::kDialNow,   paths::kBlockOut};
  world.write(kFiles[choices.number(0, 0, 5)], choices.odd_text().value_or(""));
  world.set_lists_kept(false);
}

void make_one(World& world, InputChoices& choices) {
  const auto& all = operations::all();
  const int chosen = choices.number(0, 0, static_cast<int>(all.size()));
  if (chosen == static_cast<int>(all.size())) return damage_file(world, choices);
  const Operation& operation = all[static_cast<std::size_t>(chosen)];
  if (operation.weight == 0) return;
  if (choices.number(0, 0, 63) == 63) return make_without_blocks(operation, world, choices);
  make_with_care(operation, world, choices);
}

bool positions_hold(const World& world) { return world.positions_kept() && world.index_in_step(); }

void check_tables(World& world) {
  require_unbroken(world.take_fault());
  if (phone_test::has_nameless(world.contacts())) world.set_positions_kept(false);
  require_unbroken(phone_test::broken_phonebook(world.contacts(), world.blacklist()));
  require_unbroken(phone_test::broken_history(world.history()));
  if (positions_hold(world)) require_unbroken(phone_test::broken_positions(world.contacts()));
  REQUIRE(host::locks::held() == 0);
  REQUIRE(host::locks::faulty_releases() == 0);
  REQUIRE(host::locks::inversions() == 0);
}

void check_index(World& world) {
  if (!world.index_in_step()) return;
  require_unbroken(phone_test::broken_index(world.contacts(), world.indexed_books()));
}

/// What must hold of the whole when the calls are over, and of what comes from the files.
void check_all(World& world) {
  check_index(world);
  if (positions_hold(world)) require_unbroken(phone_test::broken_by_reload());
  if (world.lists_kept()) {
    require_unbroken(phone_test::broken_rules());
    require_unbroken(phone_test::broken_messages());
  }
  contact_data_sync();
  require_unbroken(phone_test::broken_membership(world.contacts()));
  contact_delay_save();
  world.host().load();
  world.fall_behind();
  check_tables(world);
  require_unbroken(phone_test::broken_membership(world.contacts()));
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
  World& world = phone();
  world.start();
  InputChoices choices(data, size);
  for (int made = 1; made <= kMostCalls && !choices.at_end(); ++made) {
    make_one(world, choices);
    check_tables(world);
    if (made % kCallsBetweenIndexChecks == 0) check_index(world);
  }
  check_all(world);
  world.clear();
  return 0;
}
