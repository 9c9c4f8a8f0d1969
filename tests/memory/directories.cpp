// The search index, the remote books, the BroadSoft lists and the caller's name.
#include <cfgxml/broadsoft.h>
#include <cfgxml/remote.h>

#include <algorithm>
#include <cstdio>

#include "scenario.h"

namespace memory_test {
namespace {

constexpr char kBook[] = "/tmp/remote_contact.xml0";
constexpr int kRemoteBook = CFGXML_BOOK_REMOTE_FIRST;
constexpr int kSimpleBook = CFGXML_BOOK_BROADSOFT_FIRST;

// Sorted, so that what is read before memory runs out stands in the order of the whole book.
constexpr char kBookText[] = R"(<Directory>
<DirectoryEntry><Name>Adam Field</Name><Telephone>2001</Telephone></DirectoryEntry>
<DirectoryEntry><Name>Bea Wood</Name><Telephone>2002</Telephone><Telephone>2003</Telephone></DirectoryEntry>
<DirectoryEntry><Name>Cleo Hill</Name><Telephone>2002</Telephone></DirectoryEntry>
</Directory>)";

constexpr char kPage[] = R"(<Personal xmlns="http://schema.broadsoft.com/xsi">
<startIndex>1</startIndex><numberOfRecords>3</numberOfRecords>
<totalAvailableRecords>3</totalAvailableRecords>
<entry><name>Marta Eriksen</name><number>07700 900404</number></entry>
<entry><name>Giulia Brandt</name><number>07700 900074</number></entry>
<entry><name>Ana de la Cruz y Fuentes del Norte</name><number>07700 900074</number></entry>
</Personal>)";

std::int32_t lone_record = -1;  // a record of the tests' own, without a place

void with_lone_string(Stage& stage) {
  with_phonebook(stage);
  const TRIE_INFO_T info{kRemoteBook, &lone_record};
  TrieIncreaseInfo("777", &info);
}

/// The contacts have left the index, and every string that goes there needs memory.
void with_empty_index(Stage& stage) {
  with_phonebook(stage);
  stage.host().lists().give_contacts(false);
  CfgTrieReloadLocalBookInfo();
  stage.host().lists().give_contacts(true);
  stage.fill_index(CFGXML_BOOK_LOCAL);
}

void with_book_file(Stage& stage) {
  with_phonebook(stage);
  stage.write(kBook, kBookText);
}

void with_book(Stage& stage) {
  with_book_file(stage);
  cfg_get_remote_contact_summary(kBook);
}

void with_book_to_index(Stage& stage) {
  with_book(stage);
  stage.fill_index(kRemoteBook);
}

void with_indexed_book(Stage& stage) {
  with_book(stage);
  CfgTrieReloadRemoteBookInfo(0);
}

void with_page(Stage& stage) {
  with_phonebook(stage);
  stage.write("/import/page.xml", kPage);
}

void with_full_list(Stage& stage) {
  with_page(stage);
  cfg_get_broadsoft_contact_summary(stage.on_disk("/import/page.xml").c_str());
}

void with_simple_list(Stage& stage) {
  with_page(stage);
  BSFT_CONTACT_POS_T position{};
  cfg_append_broadsoft_simple_contact_summary(0, stage.on_disk("/import/page.xml").c_str(),
                                              &position);
}

void with_page_to_index(Stage& stage) {
  with_simple_list(stage);
  stage.fill_index(kSimpleBook);
}

void append(std::vector<Indexed>& records, int book, CONTACT_SUMMARY_T* head) {
  for (; head != nullptr; head = head->next) records.push_back(indexed(book, *head));
}

std::vector<Indexed> contacts_indexed(Stage& stage) {
  std::vector<Indexed> records;
  for (CONTACT_DATA_T& contact : stage.contacts().Contacts) {
    if (contact.Id >= 1) records.push_back(indexed(CFGXML_BOOK_LOCAL, contact));
  }
  return records;
}

void expect_no_contact_in_part(Stage& stage) { stage.expect_none_in_part(contacts_indexed(stage)); }

/// The remote book too.
void expect_nothing_in_part(Stage& stage) {
  std::vector<Indexed> records = contacts_indexed(stage);
  append(records, kRemoteBook, cfg_get_remote_contact_summary(kBook));
  stage.expect_none_in_part(records);
}

/// The string is in the index when the call says so; it is taken out again.
Result increase(Stage& stage) {
  const TRIE_INFO_T info{kRemoteBook, &lone_record};
  const std::string text = "A text that takes more than one node";
  const int result = stage.call(TrieIncreaseInfo, text.c_str(), &info);
  std::vector<Indexed> records = contacts_indexed(stage);
  if (result == 0) records.push_back({kRemoteBook, &lone_record, {text}});
  stage.expect_in_index(records);
  TrieDecreaseInfo(text.c_str(), &info);
  return result_of(result);
}

Result decrease(Stage& stage) {
  const TRIE_INFO_T info{kRemoteBook, &lone_record};
  return result_of(stage.call(TrieDecreaseInfo, "777", &info));
}

/// "2" leads to Anna, bert and Carla.
Result search(Stage& stage) {
  TRIE_RESULT_T* result = nullptr;
  return result_of(stage.call(CfgTrieSearchVague, "2", &result));
}

/// Every record of the list is indexed, and those of a complete list have a place each.
Result append_page(Stage& stage) {
  const std::string path = stage.on_disk("/import/page.xml");
  BSFT_CONTACT_POS_T position{};
  CONTACT_SUMMARY_T* head =
      stage.call(cfg_append_broadsoft_simple_contact_summary, 0, path.c_str(), &position);
  if (head == nullptr) return list_seen(head);
  std::vector<Indexed> records = contacts_indexed(stage);
  append(records, kSimpleBook, head);
  stage.expect_in_index(records);
  std::vector<int> places;
  std::vector<int> positions;
  for (const CONTACT_SUMMARY_T* node = head; node != nullptr; node = node->next) {
    places.push_back(static_cast<int>(places.size()));
    positions.push_back(node->position);
  }
  std::sort(positions.begin(), positions.end());
  if (position.state == CFGXML_BROADSOFT_COMPLETE) EXPECT_EQ(positions, places);
  return list_seen(head);
}

/// Functions that take the path of the page.
template <auto Function>
Result read_page(Stage& stage) {
  const std::string path = stage.on_disk("/import/page.xml");
  return list_seen(stage.call(Function, path.c_str()));
}

Scenarios search_scenarios() {
  constexpr unsigned kIndexing = kOwnIndex | kMemoryKept;
  return {
      {"TrieIncreaseInfo", "",
       [](Stage& stage) {
         with_phonebook(stage);
         stage.fill_index(kRemoteBook);
       },
       increase, "-1", kIndexing},
      {"TrieDecreaseInfo", "", with_lone_string, decrease, nullptr},
      {"CfgTrieReloadLocalBookInfo", "", with_empty_index,
       [](Stage& stage) { return result_of(stage.call(CfgTrieReloadLocalBookInfo)); }, "-1",
       kIndexing, expect_no_contact_in_part},
      {"CfgTrieReloadRemoteBookInfo", "", with_book_to_index,
       [](Stage& stage) { return result_of(stage.call(CfgTrieReloadRemoteBookInfo, 0)); }, "-1",
       kIndexing, expect_nothing_in_part},
      {"CfgTrieRemoveRemoteBookInfo", "", with_indexed_book,
       [](Stage& stage) { return result_of(stage.call(CfgTrieRemoveRemoteBookInfo, 0)); }, nullptr},
      {"CfgTrieSearchVague", "", with_phonebook, search, "0", kMemoryKept | kFreshProcess},
      {"CfgTrieSearchOfCount", "", with_phonebook,
       [](Stage& stage) {
         TRIE_ENTRY_T* entries = nullptr;
         return result_of(stage.call(CfgTrieSearchOfCount, "101", &entries));
       },
       nullptr},
  };
}

Scenarios remote_scenarios() {
  return {
      {"cfg_get_remote_book_id", "", with_phonebook,
       [](Stage& stage) { return result_of(stage.call(cfg_get_remote_book_id, kBook)); }, nullptr},
      {"cfg_get_remote_contact_summary", "", with_book_file,
       [](Stage& stage) { return list_seen(stage.call(cfg_get_remote_contact_summary, kBook)); },
       kEndsEarly},
      {"cfg_get_remote_contact_summary_clone_id", "", with_book,
       [](Stage& stage) { return result_of(stage.call(cfg_get_remote_contact_summary_clone_id)); },
       nullptr},
      {"cfg_set_remote_contact_summary_clone_id", "", with_book,
       [](Stage& stage) {
         return result_of(stage.call(cfg_set_remote_contact_summary_clone_id, 0));
       },
       nullptr},
      {"cfg_get_remote_contact_data", "", with_book,
       [](Stage& stage) {
         CONTACT_DATA_T record{};
         return result_of(stage.call(cfg_get_remote_contact_data, 2, &record));
       },
       nullptr},
      {"cfg_search_remote_contact_info", "", with_book,
       [](Stage& stage) { return list_taken(stage.call(cfg_search_remote_contact_info, "200")); },
       kEndsEarly},
      {"cfg_destory_remote_conatct_list", "", with_book,
       [](Stage& stage) { return result_of(stage.call(cfg_destory_remote_conatct_list, kBook)); },
       nullptr},
      {"cfg_get_contact_name", "", with_phonebook,
       [](Stage& stage) { return name_taken(stage.call(cfg_get_contact_name, "101", "?", 0)); },
       "NULL"},
  };
}

Scenarios broadsoft_scenarios() {
  return {
      {"cfg_get_broadsoft_contact_summary", "", with_full_list,
       read_page<cfg_get_broadsoft_contact_summary>, kEndsEarly},
      {"cfg_add_broadsoft_contact_summary_to_tail", "", with_full_list,
       read_page<cfg_add_broadsoft_contact_summary_to_tail>, kEndsEarly},
      {"cfg_get_broadsoft_conatct_pos", "", with_full_list,
       [](Stage& stage) {
         BSFT_CONTACT_POS_T position{};
         stage.call(cfg_get_broadsoft_conatct_pos, &position);
         return result_of(position.total);
       },
       nullptr},
      {"cfg_get_broadsoft_contact_data", "", with_full_list,
       [](Stage& stage) {
         BSFT_CONTACT_DATA_T record{};
         return result_of(stage.call(cfg_get_broadsoft_contact_data, 1, &record));
       },
       nullptr},
      {"cfg_search_broadsoft_contact_info", "", with_full_list,
       [](Stage& stage) {
         return list_taken(stage.call(cfg_search_broadsoft_contact_info, "077"));
       },
       kEndsEarly},
      {"cfg_destory_broadsoft_conatct_list", "", with_full_list,
       [](Stage& stage) { return result_of(stage.call(cfg_destory_broadsoft_conatct_list)); },
       nullptr},
      {"cfg_append_broadsoft_simple_contact_summary", "", with_page_to_index, append_page,
       kEndsEarly, kOwnIndex | kMemoryKept},
      {"cfg_destory_broadsoft_simple_conatct_list", "", with_simple_list,
       [](Stage& stage) {
         return result_of(stage.call(cfg_destory_broadsoft_simple_conatct_list, 0));
       },
       nullptr},
  };
}

}  // namespace

Scenarios directory_scenarios() {
  Scenarios all;
  for (const Scenarios& some : {search_scenarios(), remote_scenarios(), broadsoft_scenarios()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

}  // namespace memory_test
