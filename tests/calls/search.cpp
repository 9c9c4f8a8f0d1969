// The keypad search and the index.
#include <cstring>
#include <functional>

#include "calls/world.h"

namespace calls {
namespace {

/// The characters that a key stands for.
const char* printed_on(char key) {
  for (const char* row : {"0 +", "1", "2abcABC", "3defDEF", "4ghiGHI", "5jklJKL", "6mnoMNO",
                          "7pqrsPQRS", "8tuvTUV", "9wxyzWXYZ", "*"}) {
    if (key != '+' && std::strchr(row, key) != nullptr) return row;
  }
  return "";
}

bool begins_with(const char* text, const char* keys) {
  for (; *keys != '\0'; ++keys, ++text) {
    if (*text == '\0' || std::strchr(printed_on(*keys), *text) == nullptr) return false;
  }
  return true;
}

template <typename Record>
bool is_hit(const Record& record, const char* keys) {
  return begins_with(record.DisplayName, keys) || begins_with(record.OfficeNumber, keys) ||
         begins_with(record.MobileNumber, keys) || begins_with(record.OtherNumber, keys);
}

/// The local contacts of a result stand still while their lock is held, and match the keys.
void check_local_hits(World& world, const TRIE_RESULT_T& result, const char* keys) {
  if (!world.index_in_step()) return;
  const CONTACT_DATA_LIST_T& list = *cfg_get_contact_list();
  const std::less<const void*> before;
  for (std::size_t place = 0; place != CFGXML_BOOK_RECORDS; ++place) {
    const auto* contact = static_cast<const CONTACT_DATA_T*>(result.records[0][place]);
    if (contact == nullptr) continue;
    world.count_hit();
    const bool in_table =
        !before(contact, list.Contacts) && before(contact, list.Contacts + CFGXML_CONTACT_CAPACITY);
    world.require(in_table && contact->Id >= 1, "a search found no contact");
    world.require(contact->position == static_cast<int>(place), "a hit is in another's place");
    world.require(is_hit(*contact, keys), "a search found a contact that does not match");
  }
}

void check_other_hits(World& world, const TRIE_RESULT_T& result, const char* keys) {
  for (int book = CFGXML_BOOK_REMOTE_FIRST; book != CFGXML_BOOK_COUNT; ++book) {
    for (int place = 0; place != CFGXML_BOOK_RECORDS; ++place) {
      const auto* record = static_cast<const CONTACT_SUMMARY_T*>(result.records[book][place]);
      if (record == nullptr) continue;
      world.count_hit();
      world.require(record->position == place && is_hit(*record, keys),
                    "a search found a record that does not match");
    }
  }
}

/// Only the records of a book whose lock the caller holds may be looked at; of the others only that
/// they are there. The two locks are not taken together.
void search_keys(World& world, Choices& choices) {
  const std::lock_guard<std::mutex> one(world.one_search());
  const bool local = choices.flag();
  const HostLock hold(local ? kPhonebookLock : kRemoteLock);
  const Text keys(choices, choices.keys());
  TRIE_RESULT_T* result = nullptr;
  const int steps = CfgTrieSearchVague(keys, choices.missing() ? nullptr : &result);
  world.require(steps >= 0 && steps <= 100, "a search took too many steps");
  if (result == nullptr) return;
  world.require(result->others == nullptr, "a search found a record of no book");
  if (local) {
    check_local_hits(world, *result, keys);
  } else {
    check_other_hits(world, *result, keys);
  }
}

/// The entries belong to the index: only a caller who is alone may walk them.
void count_strings(World& world, Choices& choices) {
  TRIE_ENTRY_T* entries = nullptr;
  const bool walks = world.single_caller() && !choices.missing();
  const int count = CfgTrieSearchOfCount(Text(choices, choices.word()), walks ? &entries : nullptr);
  int listed = 0;
  for (; entries != nullptr; entries = entries->next) ++listed;
  world.require(listed <= count, "a text has more entries than strings");
}

/// A text of a record of the caller's own, in the index for a moment; its position lies behind
/// every place of the result table, so that no search shows it.
void index_own_text(World& world, Choices& choices) {
  static const std::int32_t position = CFGXML_BOOK_RECORDS;
  const TRIE_INFO_T info{choices.odd() ? choices.odd_number() : CFGXML_BOOK_COUNT,
                         const_cast<std::int32_t*>(&position)};
  const std::string text = "own " + choices.phone_number();
  world.expect_result("TrieIncreaseInfo", TrieIncreaseInfo(text.c_str(), &info), {0});
  world.require(CfgTrieSearchOfCount(text.c_str(), nullptr) >= 1, "an indexed text is missing");
  world.expect_result("TrieDecreaseInfo", TrieDecreaseInfo(text.c_str(), &info), {0});
  if (!choices.odd()) return;
  world.expect_result("TrieDecreaseInfo", TrieDecreaseInfo(text.c_str(), &info), {0});
  world.expect_result("TrieIncreaseInfo", TrieIncreaseInfo(nullptr, &info), {-1});
  world.expect_result("TrieDecreaseInfo", TrieDecreaseInfo("", &info), {-1});
}

void reload(World& world, Choices& /*choices*/) {
  world.fall_behind();
  world.expect_result("CfgTrieReloadLocalBookInfo", CfgTrieReloadLocalBookInfo(), {0});
  world.set_positions_kept(true);
  world.catch_up();
}

}  // namespace

const std::vector<Call> kSearchCalls = {
    {"search by keys", 20, search_keys},
    {"count strings", 8, count_strings},
    {"index a text", 4, index_own_text},
    {"index the contacts afresh", 2, reload},
};

}  // namespace calls
