#include "support/invariants.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

#include "support/list_functions.h"
#include "support/records.h"

namespace phone_test {
namespace {

constexpr std::string_view kNoName = "(Empty)";

/// "contacts[3]: <rule>".
std::string at(const char* table, std::size_t index, const std::string& rule) {
  return std::string(table) + "[" + std::to_string(index) + "]: " + rule;
}

/// The first that is broken.
std::string first_of(std::initializer_list<std::string> rules) {
  for (const std::string& rule : rules) {
    if (!rule.empty()) return rule;
  }
  return "";
}

bool terminated(const GROUP_DATA_T& group) {
  return phone_test::terminated(group.Name, group.Ring, group.Description);
}
bool terminated(const CONTACT_DATA_T& contact) {
  return phone_test::terminated(contact.DisplayName, contact.OfficeNumber, contact.MobileNumber,
                                contact.OtherNumber, contact.Group, contact.Ring, contact.Photo);
}
bool terminated(const HISTORY_DATA_T& call) {
  return phone_test::terminated(call.Date, call.Time, call.LocalSipName, call.LocalSipServer,
                                call.RemoteSipName, call.RemoteSipServer, call.RemoteDisplayName,
                                call.CallDuration);
}
bool terminated(const SMS_SUMMARY_T& message) { return phone_test::terminated(message.label); }
bool terminated(const DIAL_REPLACE_DATA_T& rule) {
  return phone_test::terminated(rule.Prefix, rule.Replace);
}
template <typename Rule>
bool terminated(const Rule& rule) {
  return phone_test::terminated(rule.Rule);
}

/// What the records of a table or of a list have in common.
template <typename Records>
std::string broken_records(const char* name, const Records& records, Ids ids) {
  std::set<int> seen;
  std::size_t place = 0;
  for (const auto& record : records) {
    if (ids == Ids::kUnique && !seen.insert(id_of(record)).second) {
      return at(name, place, "id " + std::to_string(id_of(record)) + " is taken");
    }
    if (!terminated(record)) return at(name, place, "a text is not terminated");
    ++place;
  }
  return "";
}

template <typename Record>
bool is_clear(const Record* records, std::size_t count) {
  const auto* bytes = reinterpret_cast<const char*>(records);
  return count == 0 ||
         (*bytes == 0 && std::memcmp(bytes, bytes + 1, count * sizeof *records - 1) == 0);
}

template <typename Record, std::size_t Capacity>
std::string broken_table(const char* name, const Record (&table)[Capacity], Ids ids) {
  const Used used(table);
  const std::string broken = broken_records(name, used, ids);
  if (!broken.empty() || used.size() == Capacity) return broken;
  // A reader may leave a free id in the first free slot, and nothing else.
  Record first_free = *used.end();
  id_of(first_free) = 0;
  const bool clear =
      is_clear(&first_free, 1) && is_clear(used.end() + 1, Capacity - used.size() - 1);
  return clear ? "" : at(name, used.size(), "not clear behind the last record");
}

bool is_nameless(const char* name) { return *name == '\0' || name == kNoName; }

/// Notes the texts of records, none of which may be known.
template <typename Records, typename Text>
std::string repeated(std::set<std::string>& known, const char* table, const Records& records,
                     Text text_of) {
  std::size_t place = 0;
  for (const auto& record : records) {
    const char* text = text_of(record);
    if (!is_nameless(text) && !known.insert(text).second) {
      return at(table, place, "name <" + std::string(text) + "> is taken");
    }
    ++place;
  }
  return "";
}

std::string repeated_names(const CONTACT_DATA_LIST_T& contacts,
                           const BLACK_DATA_LIST_T& blacklist) {
  const auto group_name = [](const GROUP_DATA_T& group) { return group.Name; };
  const auto name = [](const CONTACT_DATA_T& record) { return record.DisplayName; };
  std::set<std::string> groups;
  std::set<std::string> names;
  return first_of({repeated(groups, "groups", Used(contacts.Groups), group_name),
                   repeated(names, "contacts", Used(contacts.Contacts), name),
                   repeated(names, "blacklist", Used(blacklist.Entries), name)});
}

/// The texts of a book or of all, and the records that have them, each as often as it has them.
using Entry = std::pair<int, const void*>;
using Entries = std::multiset<Entry>;
using Texts = std::map<std::string, Entries>;

Entries indexed_under(const std::string& text) {
  TRIE_ENTRY_T* entry = nullptr;
  Entries entries;
  if (CfgTrieSearchOfCount(text.c_str(), &entry) == 0) return entries;
  for (; entry != nullptr; entry = entry->next)
    entries.emplace(entry->info.book, entry->info.record);
  return entries;
}

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
  for (const CONTACT_DATA_T& contact : Used(contacts.Contacts)) {
    add_texts(texts, CFGXML_BOOK_LOCAL, contact, may_miss);
  }
  for (int book = CFGXML_BOOK_REMOTE_FIRST; book != CFGXML_BOOK_COUNT; ++book) {
    const CONTACT_SUMMARY_T* record = books[static_cast<std::size_t>(book)];
    for (; record != nullptr; record = record->next) add_texts(texts, book, *record, may_miss);
  }
  return texts;
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

/// What keypad searches come to: their steps, and the records that they find in each book.
using Hits = std::pair<int, Entries>;

std::vector<Hits> search_all_keys() {
  std::vector<Hits> hits;
  for (const char first : std::string_view("0123456789*")) {
    for (const char second : std::string_view("0123456789\0", 11)) {
      const char keys[] = {first, second, '\0'};
      TRIE_RESULT_T* result = nullptr;
      hits.emplace_back(CfgTrieSearchVague(keys, &result), Entries());
      for (int book = 0; result != nullptr && book != CFGXML_BOOK_COUNT; ++book) {
        for (const void* record : result->records[book]) {
          if (record != nullptr) hits.back().second.emplace(book, record);
        }
      }
    }
  }
  return hits;
}

template <typename Rule>
std::string broken_list(const list_functions::RuleList<Rule>& list) {
  const std::vector<Rule> rules = take(list.list());
  std::set<std::string> texts;
  return first_of(
      {broken_records(list.name, rules, Ids::kUnique),
       rules.size() > list.capacity ? at(list.name, rules.size(), "the list is too long") : "",
       list.distinct ? repeated(texts, list.name, rules,
                                [&](const Rule& rule) -> const char* { return rule.*list.text; })
                     : ""});
}

}  // namespace

std::string broken_phonebook(const CONTACT_DATA_LIST_T& contacts,
                             const BLACK_DATA_LIST_T& blacklist, Ids ids) {
  return first_of({broken_table("groups", contacts.Groups, ids),
                   broken_table("contacts", contacts.Contacts, ids),
                   broken_table("blacklist", blacklist.Entries, ids),
                   repeated_names(contacts, blacklist)});
}

std::string broken_history(const HISTORY_DATA_LIST& history, Ids ids) {
  return broken_table("history", history.Records, ids);
}

bool has_nameless(const CONTACT_DATA_LIST_T& contacts) {
  const Used used(contacts.Contacts);
  return std::any_of(used.begin(), used.end(), [](const CONTACT_DATA_T& contact) {
    return is_nameless(contact.DisplayName);
  });
}

std::string broken_positions(const CONTACT_DATA_LIST_T& contacts) {
  const Used used(contacts.Contacts);
  std::vector<const CONTACT_DATA_T*> by_position(used.size());
  for (const CONTACT_DATA_T& contact : used) {
    const auto index = static_cast<std::size_t>(&contact - used.begin());
    const std::string place = "position " + std::to_string(contact.position);
    const auto position = static_cast<std::size_t>(contact.position);
    if (position >= used.size()) return at("contacts", index, place + " is out of range");
    if (by_position[position] != nullptr) return at("contacts", index, place + " is taken");
    by_position[position] = &contact;
  }
  for (std::size_t p = 1; p < used.size(); ++p) {
    if (rl_strcasecmp(by_position[p - 1]->DisplayName, by_position[p]->DisplayName) > 0) {
      return at("positions", p, "not in the order of the names");
    }
  }
  return "";
}

std::string broken_membership(const CONTACT_DATA_LIST_T& list) {
  std::set<std::string_view> groups{"Default"};
  for (const GROUP_DATA_T& group : Used(list.Groups)) groups.insert(group.Name);
  const Used used(list.Contacts);
  for (const CONTACT_DATA_T& contact : used) {
    if (groups.count(contact.Group) != 0) continue;
    return at("contacts", static_cast<std::size_t>(&contact - used.begin()),
              "no group <" + std::string(contact.Group) + ">");
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
  const auto differ = std::mismatch(before.begin(), before.end(), after.begin()).first;
  if (differ == before.end()) return "";
  return at("searches", static_cast<std::size_t>(differ - before.begin()),
            "differs from that in a fresh index");
}

std::string broken_rules() {
  return first_of({broken_list(list_functions::kDialNow), broken_list(list_functions::kDialReplace),
                   broken_list(list_functions::kBlockOut)});
}

std::string broken_messages() {
  std::string broken;
  for (const list_functions::Box& box : list_functions::kBoxes) {
    const std::vector<SMS_SUMMARY_T> messages = take(box.list());
    broken = first_of({broken, broken_records(box.element, messages, Ids::kUnique)});
    if (messages.size() > CFGXML_MESSAGE_CAPACITY)
      broken = at(box.element, messages.size(), "full");
  }
  return broken;
}

}  // namespace phone_test
