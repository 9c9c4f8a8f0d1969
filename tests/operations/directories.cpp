// The search index, the remote books, the BroadSoft lists and the caller's name. Who uses a book
// owns it: see World::books_mutex().
#include <cfgxml/broadsoft.h>
#include <cfgxml/remote.h>

#include <cstring>
#include <memory>

#include "operations/shapes.h"
#include "support/paths.h"

namespace operations {
namespace {

constexpr char kPage[] = "/import/personal-1.xml";
constexpr int kFirst = CFGXML_BOOK_REMOTE_FIRST;

std::string path_of(int remote) { return cfgxml::paths::kRemoteBook + std::to_string(remote); }

Book& remote_book(World& world, int remote) { return world.book(kFirst + remote); }
bool is_remote(int remote) { return remote >= 0 && remote < CFGXML_REMOTE_BOOK_COUNT; }

// ---- The index

/// A record of the callers' own; its position lies behind every place of the result table, so that
/// no search shows it.
TRIE_INFO_T own_record(Choices& choices) {
  static const std::int32_t position = CFGXML_BOOK_RECORDS;
  const int book = choices.odd(Argument::kContent) ? choices.odd_number() : CFGXML_BOOK_COUNT - 1;
  return {book, const_cast<std::int32_t*>(&position)};
}

/// A text is in the index for a moment, and found when the call says so.
Result index_text(World& world, Choices& choices) {
  TRIE_INFO_T info = own_record(choices);
  const char* text = choices.text("own text that takes more than one node");
  const TRIE_INFO_T* argument = choices.argument(info);
  const int result = world.call(TrieIncreaseInfo, text, argument);
  if (result != 0) return number_of(result);
  world.require(CfgTrieSearchOfCount(text, nullptr) >= 1, "an indexed text is missing");
  TrieDecreaseInfo(text, &info);
  return number_of(result);
}

Result remove_text(World& world, Choices& choices) {
  TRIE_INFO_T info = own_record(choices);
  const char* text = choices.text("own text");
  if (text != nullptr && *text != '\0') TrieIncreaseInfo(text, &info);
  return number_of(world.call(TrieDecreaseInfo, text, &info));
}

/// The key that a character is printed on.
char key_of(char character) {
  const char letter = static_cast<char>(character | 0x20);
  if (letter >= 'a' && letter <= 'z') return "22233344455566677778889999"[letter - 'a'];
  return character == ' ' || character == '+' ? '0' : character;
}

bool begins_with(const char* text, const char* keys) {
  while (*keys != '\0' && key_of(*text) == key_of(*keys)) ++text, ++keys;
  return *keys == '\0';
}

template <typename Record>
bool is_hit(const Record& record, int place, const char* keys) {
  return record.position == place &&
         (begins_with(record.DisplayName, keys) || begins_with(record.OfficeNumber, keys) ||
          begins_with(record.MobileNumber, keys) || begins_with(record.OtherNumber, keys));
}

/// Every hit has its place and matches the keys. The books stand still for their owner, the
/// contacts while their lock is held.
void check_hits(World& world, const TRIE_RESULT_T& result, const char* keys) {
  world.require(result.others == nullptr, "a search found a record of no book");
  for (int book = 0; book != CFGXML_BOOK_COUNT; ++book) {
    if (book == CFGXML_BOOK_LOCAL && !world.index_in_step()) continue;
    for (int place = 0; place != CFGXML_BOOK_RECORDS; ++place) {
      const void* record = result.records[book][place];
      if (record == nullptr) continue;
      world.count_hit();
      const bool hit = book == CFGXML_BOOK_LOCAL
                           ? is_hit(*static_cast<const CONTACT_DATA_T*>(record), place, keys)
                           : is_hit(*static_cast<const CONTACT_SUMMARY_T*>(record), place, keys);
      world.require(hit, std::string("what was found for ") + keys + " does not match");
    }
  }
}

std::string some_keys(Choices& choices) {
  if (!choices.varies()) return "2";
  std::string keys;
  for (int length = choices.number(1, 1, 3); length != 0; --length) {
    keys += "0123456789*"[choices.number(2, 0, 10)];
  }
  return keys;
}

Result search_keys(World& world, Choices& choices) {
  const HostLock hold(Lock::kPhonebook);
  TRIE_RESULT_T* result = nullptr;
  const char* keys = choices.text(some_keys(choices), Argument::kWord);
  const int steps = world.call(CfgTrieSearchVague, keys, choices.argument(result));
  world.require(steps >= 0 && steps <= 100, "a search took too many steps");
  if (result != nullptr) check_hits(world, *result, keys);
  return text_of(result != nullptr ? "found" : "nothing");
}

/// The entries belong to the index: only a caller who is alone may walk them.
Result count_strings(World& world, Choices& choices) {
  TRIE_ENTRY_T* entries = nullptr;
  const char* prefix = choices.text("100", Argument::kWord);
  const int count =
      world.call(CfgTrieSearchOfCount, prefix, world.single_caller() ? &entries : nullptr);
  for (int listed = 1; entries != nullptr; entries = entries->next, ++listed) {
    world.require(listed <= count, "a text has more entries than strings");
  }
  return text_of(count > 0 ? "found" : "nothing");
}

/// The contacts have left the index.
void with_empty_index(World& world) {
  world.host().lists().give_contacts(false);
  CfgTrieReloadLocalBookInfo();
  world.host().lists().give_contacts(true);
}

// ---- Remote books

void with_book(World& world) {
  remote_book(world, 0).head = cfg_get_remote_contact_summary(path_of(0).c_str());
}

void with_indexed_book(World& world) {
  with_book(world);
  remote_book(world, 0).indexed = CfgTrieReloadRemoteBookInfo(0) == 0;
}

template <auto Function>
Result book_of_path(World& world, Choices& choices) {
  return number_of(world.call(Function, choices.path(path_of(choices.number(0, 0, 4)))));
}

Result load_book(World& world, Choices& choices) {
  const int remote = choices.number(0, 0, 4);
  if (choices.varies()) world.write(path_of(remote), world.varied(path_of(remote % 2), choices));
  const char* path = choices.path(path_of(remote));
  const int named = cfg_get_remote_book_id(path);
  const CONTACT_SUMMARY_T* head = world.call(cfg_get_remote_contact_summary, path);
  if (is_remote(named)) remote_book(world, named).head = const_cast<CONTACT_SUMMARY_T*>(head);
  return list_seen(head);
}

/// Whoever frees a book takes it out of the index first.
Result free_book(World& world, Choices& choices) {
  const char* path = choices.path(path_of(choices.number(0, 0, 4)));
  const int remote = cfg_get_remote_book_id(path);
  if (is_remote(remote)) {
    CfgTrieRemoveRemoteBookInfo(remote);
    remote_book(world, remote) = {};
  }
  return number_of(world.call(cfg_destory_remote_conatct_list, path));
}

Result index_book(World& world, Choices& choices) {
  const int remote = choices.below(CFGXML_REMOTE_BOOK_COUNT);
  const int result = world.call(CfgTrieReloadRemoteBookInfo, remote);
  if (is_remote(remote))
    remote_book(world, remote).indexed = remote_book(world, remote).head != nullptr;
  return number_of(result);
}

Result remove_book(World& world, Choices& choices) {
  const int remote = choices.below(CFGXML_REMOTE_BOOK_COUNT);
  const int strings = world.call(CfgTrieRemoveRemoteBookInfo, remote);
  if (is_remote(remote)) remote_book(world, remote).indexed = false;
  return text_of(strings > 0 ? "removed" : std::to_string(strings));
}

Result choose_book(World& world, Choices& choices) {
  return number_of(
      world.call(cfg_set_remote_contact_summary_clone_id, choices.below(CFGXML_REMOTE_BOOK_COUNT)));
}

template <auto Function>
Result finding(World& world, Choices& choices) {
  return list_taken(world.call(Function, choices.text("0", Argument::kWord)));
}

Result name_caller(World& world, Choices& choices) {
  const char* number = choices.text("100", Argument::kWord);
  const char* shown = choices.text("?", Argument::kWord);
  const std::unique_ptr<char[]> name(
      world.call(cfg_get_contact_name, number, shown, choices.line()));
  world.require(name == nullptr || std::strlen(name.get()) < 64, "a caller has a long name");
  return text_of(name != nullptr ? name.get() : "NULL");
}

// ---- The directories of a BroadSoft server

void with_full_list(World& world) {
  cfg_get_broadsoft_contact_summary(world.on_disk(kPage).c_str());
}

template <auto Function>
Result read_page(World& world, Choices& choices) {
  return list_seen(world.call(Function, world.file(choices, kPage)));
}

Result get_position(World& world, Choices& choices) {
  auto record = untouched<BSFT_CONTACT_POS_T>();
  auto* argument = choices.argument(record);
  return with_record(record, [&] {
    const BSFT_CONTACT_POS_T* given = world.call(cfg_get_broadsoft_conatct_pos, argument);
    return given == &record && argument != nullptr ? 0 : -1;
  });
}

/// The position is the caller's record of the list.
Result extend_list(World& world, Choices& choices) {
  const int list = choices.below(CFGXML_BROADSOFT_LIST_COUNT);
  const bool is_list = list >= 0 && list < CFGXML_BROADSOFT_LIST_COUNT;
  Book& book = world.book(is_list ? CFGXML_BOOK_BROADSOFT_FIRST + list : 0);
  const char* path = world.file(choices, kPage);
  CONTACT_SUMMARY_T* head = world.call(cfg_append_broadsoft_simple_contact_summary, list, path,
                                       choices.argument(book.position));
  if (head != nullptr) book.head = head;
  book.indexed = is_list && book.head != nullptr;
  return list_seen(head);
}

void with_simple_list(World& world) {
  PlainChoices plain;
  extend_list(world, plain);
}

Result free_list(World& world, Choices& choices) {
  const int list = choices.below(CFGXML_BROADSOFT_LIST_COUNT);
  const bool is_list = list >= 0 && list < CFGXML_BROADSOFT_LIST_COUNT;
  const int result = world.call(cfg_destory_broadsoft_simple_conatct_list, list);
  if (is_list) world.book(CFGXML_BOOK_BROADSOFT_FIRST + list) = {};
  return number_of(result);
}

}  // namespace

Operations directory_operations() {
  // clang-format off
  return joined({
      family(Lock::kNone, 0, kQuiet, {
          Operation("TrieIncreaseInfo", index_text).runs_out("-1")
              .indexes_in(CFGXML_BOOK_COUNT - 1),
          Operation("TrieDecreaseInfo", remove_text),
          Operation("CfgTrieRemoveRemoteBookInfo", remove_book).after(with_indexed_book)
              .gives("removed").fails("0").is(kOwnBooks),
          Operation("CfgTrieSearchVague", search_keys).gives("found").fails("nothing")
              .runs_out("nothing").is(kMemoryKept | kFreshProcess | kOwnBooks).often(20),
          Operation("CfgTrieSearchOfCount", count_strings).gives("found").fails("nothing"),
          OPERATION(book_of_path, cfg_get_remote_book_id).also("*"),
          OPERATION(calling, cfg_get_remote_contact_summary_clone_id).after(with_book).also("*"),
          Operation("cfg_set_remote_contact_summary_clone_id", choose_book).after(with_book),
          Operation("cfg_get_broadsoft_conatct_pos", get_position).after(with_full_list),
      }),
      family(Lock::kPhonebook, kContacts, kQuiet, {
          OPERATION(calling, CfgTrieReloadLocalBookInfo).after(with_empty_index).runs_out("-1")
              .indexes_in(CFGXML_BOOK_LOCAL).is(kIndexInPart),
          Operation("cfg_get_contact_name", name_caller).gives("Reception").fails("NULL")
              .also("*").runs_out("NULL"),
      }),
      family(Lock::kRemote, 0, kOwnBooks, {
          Operation("CfgTrieReloadRemoteBookInfo", index_book).after(with_book).runs_out("-1")
              .indexes_in(kFirst).is(kIndexInPart | kQuiet),
          Operation("cfg_get_remote_contact_summary", load_book).lists(),
          OPERATION(getting, cfg_get_remote_contact_data).after(with_book).refuses("5").absent("0")
              .also("-1"),
          OPERATION(finding, cfg_search_remote_contact_info).after(with_book).lists(),
          Operation("cfg_destory_remote_conatct_list", free_book).after(with_book),
          OPERATION(read_page, cfg_get_broadsoft_contact_summary).lists(),
          OPERATION(read_page, cfg_add_broadsoft_contact_summary_to_tail).after(with_full_list)
              .lists(),
          Operation("cfg_get_broadsoft_contact_data", getting<cfg_get_broadsoft_contact_data, 1, 4>)
              .after(with_full_list).refuses("5").absent("0").also("-1"),
          OPERATION(finding, cfg_search_broadsoft_contact_info).after(with_full_list).lists(),
          OPERATION(calling, cfg_destory_broadsoft_conatct_list).after(with_full_list).often(1),
          Operation("cfg_append_broadsoft_simple_contact_summary", extend_list).lists()
              .indexes_in(CFGXML_BOOK_BROADSOFT_FIRST),
          Operation("cfg_destory_broadsoft_simple_conatct_list", free_list)
              .after(with_simple_list).often(1),
      }),
  });
  // clang-format on
}

}  // namespace operations
