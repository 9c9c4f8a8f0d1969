#include "support/invariants.h"

#include <cfgxml/dialrule.h>
#include <cfgxml/host.h>
#include <cfgxml/message.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace phone_test {
namespace {

constexpr char kNoName[] = "(Empty)";
constexpr char kDefaultGroup[] = "Default";

/// "contacts[3]: <rule>".
std::string at(const char* table, std::size_t index, const std::string& rule) {
  return std::string(table) + "[" + std::to_string(index) + "]: " + rule;
}

template <std::size_t Capacity>
bool terminated(const char (&text)[Capacity]) {
  return std::memchr(text, '\0', Capacity) != nullptr;
}

bool texts_terminated(const GROUP_DATA_T& group) {
  return terminated(group.Name) && terminated(group.Ring) && terminated(group.Description);
}

bool texts_terminated(const CONTACT_DATA_T& contact) {
  return terminated(contact.DisplayName) && terminated(contact.OfficeNumber) &&
         terminated(contact.MobileNumber) && terminated(contact.OtherNumber) &&
         terminated(contact.Group) && terminated(contact.Ring) && terminated(contact.Photo);
}

bool texts_terminated(const HISTORY_DATA_T& call) {
  return terminated(call.Date) && terminated(call.Time) && terminated(call.LocalSipName) &&
         terminated(call.LocalSipServer) && terminated(call.RemoteSipName) &&
         terminated(call.RemoteSipServer) && terminated(call.RemoteDisplayName) &&
         terminated(call.CallDuration);
}

template <auto Id, typename Record, std::size_t Capacity>
std::size_t used(const Record (&table)[Capacity]) {
  std::size_t count = 0;
  while (count != Capacity && table[count].*Id >= 1) ++count;
  return count;
}

/// True when the records hold nothing but zeros.
template <typename Record>
bool are_clear(const Record* first, const Record* end) {
  if (first == end) return true;
  const auto* bytes = reinterpret_cast<const char*>(first);
  const auto size = static_cast<std::size_t>(end - first) * sizeof(Record);
  return *bytes == 0 && std::memcmp(bytes, bytes + 1, size - 1) == 0;
}

/// What the packed tables of the host's blocks have in common.
template <auto Id, typename Record, std::size_t Capacity>
std::string broken_table(const char* name, const Record (&table)[Capacity]) {
  const std::size_t end = used<Id>(table);
  std::set<int> ids;
  for (std::size_t i = 0; i != end; ++i) {
    const int id = table[i].*Id;
    if (!ids.insert(id).second) return at(name, i, "id " + std::to_string(id) + " is taken");
    if (!texts_terminated(table[i])) return at(name, i, "a text is not terminated");
  }
  if (end == Capacity) return "";
  // A reader may leave a free id in the first free slot, and nothing else.
  Record first_free = table[end];
  first_free.*Id = 0;
  const bool clear =
      are_clear(&first_free, &first_free + 1) && are_clear(table + end + 1, table + Capacity);
  return clear ? "" : at(name, end, "not clear behind the last record");
}

bool is_nameless(const char* name) { return *name == '\0' || std::strcmp(name, kNoName) == 0; }

std::string broken_group_names(const CONTACT_DATA_LIST_T& list) {
  std::set<std::string_view> names;
  for (std::size_t i = 0; i != used<&GROUP_DATA_T::Id>(list.Groups); ++i) {
    const char* name = list.Groups[i].Name;
    if (!names.insert(name).second)
      return at("groups", i, "name <" + std::string(name) + "> is taken");
  }
  return "";
}

std::string broken_display_names(const CONTACT_DATA_LIST_T& contacts,
                                 const BLACK_DATA_LIST_T& blacklist) {
  std::set<std::string_view> names;
  const auto broken = [&](const char* table, const auto& records) -> std::string {
    for (std::size_t i = 0; i != used<&CONTACT_DATA_T::Id>(records); ++i) {
      const char* name = records[i].DisplayName;
      if (is_nameless(name) || names.insert(name).second) continue;
      return at(table, i, "name <" + std::string(name) + "> is taken");
    }
    return "";
  };
  const std::string rule = broken("contacts", contacts.Contacts);
  return rule.empty() ? broken("blacklist", blacklist.Entries) : rule;
}

/// The texts of a book or of all, and the records that have them, each as often as it has them.
using Entry = std::pair<int, const void*>;
using Entries = std::multiset<Entry>;
using Texts = std::map<std::string, Entries>;

Entries indexed_under(const std::string& text);

/// Adds a record's texts; none when the index has none of them and may miss it.
template <typename Record>
void add_texts(Texts& texts, int book, const Record& record, bool may_miss) {
  const auto all = {record.DisplayName, record.OfficeNumber, record.MobileNumber,
                    record.OtherNumber};
  const auto is_indexed = [&](const char* text) {
    return *text != '\0' && indexed_under(text).count({book, &record}) != 0;
  };
  if (may_miss && std::none_of(all.begin(), all.end(), is_indexed)) return;
  for (const char* text : all) {
    if (*text != '\0') texts[text].emplace(book, &record);
  }
}

Texts texts_of(const CONTACT_DATA_LIST_T& contacts, const Books& books, bool may_miss) {
  Texts texts;
  for (std::size_t i = 0; i != used<&CONTACT_DATA_T::Id>(contacts.Contacts); ++i) {
    add_texts(texts, CFGXML_BOOK_LOCAL, contacts.Contacts[i], may_miss);
  }
  for (int book = CFGXML_BOOK_REMOTE_FIRST; book != CFGXML_BOOK_COUNT; ++book) {
    const CONTACT_SUMMARY_T* record = books[static_cast<std::size_t>(book)];
    for (; record != nullptr; record = record->next) add_texts(texts, book, *record, may_miss);
  }
  return texts;
}

Entries indexed_under(const std::string& text) {
  TRIE_ENTRY_T* entry = nullptr;
  Entries entries;
  if (CfgTrieSearchOfCount(text.c_str(), &entry) == 0) return entries;
  for (; entry != nullptr; entry = entry->next)
    entries.emplace(entry->info.book, entry->info.record);
  return entries;
}

/// All strings in the index: those that begin with a byte, for every byte.
std::size_t strings_indexed() {
  std::size_t strings = 0;
  for (int byte = 1; byte != 256; ++byte) {
    const char prefix[] = {static_cast<char>(byte), '\0'};
    strings += static_cast<std::size_t>(CfgTrieSearchOfCount(prefix, nullptr));
  }
  return strings;
}

/// What a keypad search comes to: its steps, and the records it finds in each book.
struct Hits {
  int steps;
  std::vector<Entry> found;
  bool operator==(const Hits& other) const { return steps == other.steps && found == other.found; }
};

Hits search(const char* keys) {
  TRIE_RESULT_T* result = nullptr;
  Hits hits{CfgTrieSearchVague(keys, &result), {}};
  if (result == nullptr) return hits;
  for (int book = 0; book != CFGXML_BOOK_COUNT; ++book) {
    for (const void* record : result->records[book]) {
      if (record != nullptr) hits.found.emplace_back(book, record);
    }
  }
  std::sort(hits.found.begin(), hits.found.end());
  return hits;
}

std::vector<Hits> search_all_keys() {
  std::vector<Hits> hits;
  for (const char* first = "0123456789*"; *first != '\0'; ++first) {
    for (const char* second = "0123456789"; *second != '\0'; ++second) {
      const char keys[] = {*first, *second, '\0'};
      hits.push_back(search(keys));
    }
    const char key[] = {*first, '\0'};
    hits.push_back(search(key));
  }
  return hits;
}

/// Takes a list that the library handed out, and frees it.
template <typename Node, typename Look>
void take_list(Node* node, Look look) {
  while (node != nullptr) {
    look(*node);
    Node* next = node->next;
    rl_free(node);
    node = next;
  }
}

/// What the lists in files have in common. The texts are those that a list keeps unique.
template <typename Node, typename IdOf>
std::string broken_list(const char* name, Node* head, std::size_t capacity, IdOf id_of,
                        const char* (*unique_text)(const Node&) = nullptr) {
  std::string broken;
  std::set<int> ids;
  std::set<std::string> texts;
  take_list(head, [&](const Node& node) {
    const std::size_t place = ids.size();
    if (!broken.empty()) return;
    if (place == capacity) broken = at(name, place, "the list is longer than it may be");
    const int id = id_of(node);
    if (!ids.insert(id).second) broken = at(name, place, "id " + std::to_string(id) + " is taken");
    if (unique_text == nullptr || texts.insert(unique_text(node)).second) return;
    broken = at(name, place, std::string("text <") + unique_text(node) + "> is taken");
  });
  return broken;
}

constexpr std::size_t kAnyLength = SIZE_MAX;

/// The first that is broken.
std::string first_of(std::initializer_list<std::string> rules) {
  for (const std::string& rule : rules) {
    if (!rule.empty()) return rule;
  }
  return "";
}

}  // namespace

std::string broken_phonebook(const CONTACT_DATA_LIST_T& contacts,
                             const BLACK_DATA_LIST_T& blacklist) {
  return first_of({broken_table<&GROUP_DATA_T::Id>("groups", contacts.Groups),
                   broken_table<&CONTACT_DATA_T::Id>("contacts", contacts.Contacts),
                   broken_table<&CONTACT_DATA_T::Id>("blacklist", blacklist.Entries),
                   broken_group_names(contacts), broken_display_names(contacts, blacklist)});
}

std::string broken_history(const HISTORY_DATA_LIST& history) {
  return broken_table<&HISTORY_DATA_T::ID>("history", history.Records);
}

bool has_nameless(const CONTACT_DATA_LIST_T& contacts) {
  const CONTACT_DATA_T* end = contacts.Contacts + used<&CONTACT_DATA_T::Id>(contacts.Contacts);
  return std::any_of(contacts.Contacts, end, [](const CONTACT_DATA_T& contact) {
    return is_nameless(contact.DisplayName);
  });
}

std::string broken_positions(const CONTACT_DATA_LIST_T& contacts) {
  const std::size_t count = used<&CONTACT_DATA_T::Id>(contacts.Contacts);
  std::vector<const CONTACT_DATA_T*> by_position(count);
  for (std::size_t i = 0; i != count; ++i) {
    const std::string place = std::to_string(contacts.Contacts[i].position);
    const auto position = static_cast<std::size_t>(contacts.Contacts[i].position);
    if (position >= count) return at("contacts", i, "position " + place + " is out of range");
    if (by_position[position] != nullptr)
      return at("contacts", i, "position " + place + " is taken");
    by_position[position] = &contacts.Contacts[i];
  }
  for (std::size_t p = 1; p < count; ++p) {
    if (rl_strcasecmp(by_position[p - 1]->DisplayName, by_position[p]->DisplayName) > 0) {
      return at("positions", p, "not in the order of the names");
    }
  }
  return "";
}

std::string broken_membership(const CONTACT_DATA_LIST_T& list) {
  std::set<std::string_view> groups{kDefaultGroup};
  for (std::size_t i = 0; i != used<&GROUP_DATA_T::Id>(list.Groups); ++i) {
    groups.insert(list.Groups[i].Name);
  }
  for (std::size_t i = 0; i != used<&CONTACT_DATA_T::Id>(list.Contacts); ++i) {
    const char* group = list.Contacts[i].Group;
    if (groups.count(group) == 0) return at("contacts", i, "no group <" + std::string(group) + ">");
  }
  return "";
}

std::string broken_index(const CONTACT_DATA_LIST_T& contacts, const Books& books,
                         bool records_may_miss) {
  std::size_t strings = 0;
  for (const auto& [text, expected] : texts_of(contacts, books, records_may_miss)) {
    const Entries found = indexed_under(text);
    const bool as_expected = text == kNoName ? std::includes(expected.begin(), expected.end(),
                                                             found.begin(), found.end())
                                             : expected == found;
    if (!as_expected) {
      return "index: under <" + text + "> stand " + std::to_string(found.size()) + " entries for " +
             std::to_string(expected.size()) + " texts, or other records";
    }
    strings += found.size();
  }
  const std::size_t indexed = strings_indexed();
  if (indexed == strings) return "";
  return "index: holds " + std::to_string(indexed) + " strings, the books " +
         std::to_string(strings);
}

std::string broken_by_reload() {
  const std::vector<Hits> before = search_all_keys();
  if (CfgTrieReloadLocalBookInfo() != 0) return "index: the contacts can not be indexed";
  const std::vector<Hits> after = search_all_keys();
  for (std::size_t i = 0; i != before.size(); ++i) {
    if (!(before[i] == after[i])) return at("searches", i, "differs from that in a fresh index");
  }
  return "";
}

std::string broken_rules() {
  const auto id = [](const auto& rule) { return rule.ID; };
  return first_of(
      {broken_list<DIAL_NOW_DATA_T>("DialNow", cfg_get_dialnow_list(), CFGXML_DIALRULE_CAPACITY, id,
                                    [](const DIAL_NOW_DATA_T& rule) { return rule.Rule; }),
       broken_list<DIAL_REPLACE_DATA_T>(
           "DialReplace", cfg_get_dialreplace_list(), CFGXML_DIALRULE_CAPACITY, id,
           [](const DIAL_REPLACE_DATA_T& rule) { return rule.Prefix; }),
       broken_list<BLOCKOUT_DATA_T>("BlockOut", cfg_get_blockout_list(), kAnyLength, id)});
}

std::string broken_messages() {
  const auto broken_box = [](const char* name, SMS_SUMMARY_T* head) {
    return broken_list(name, head, CFGXML_MESSAGE_CAPACITY,
                       [](const SMS_SUMMARY_T& message) { return message.id; });
  };
  return first_of({broken_box("inbox", cfg_get_inbox_list()),
                   broken_box("outbox", cfg_get_outbox_list()),
                   broken_box("sentbox", cfg_get_sentbox_list()),
                   broken_box("draftbox", cfg_get_draftbox_list())});
}

}  // namespace phone_test
