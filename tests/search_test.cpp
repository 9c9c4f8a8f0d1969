// The index and its queries, against a literal form of the rules that define them.
#include <cfgxml/host.h>
#include <cfgxml/search.h>
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <deque>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/phone.h"

namespace {

/// The rules step by step over a plain table of the strings: a node is the prefix that leads to it.
class LiteralIndex {
 public:
  using Entries = std::vector<TRIE_INFO_T>;

  void insert(const std::string& text, const TRIE_INFO_T& info) { strings_[text].push_back(info); }

  void erase(const std::string& text, const void* record) {
    const auto found = strings_.find(text);
    if (found == strings_.end()) return;
    Entries& entries = found->second;
    const auto has_record = [&](const TRIE_INFO_T& info) { return info.record == record; };
    const auto entry = std::find_if(entries.begin(), entries.end(), has_record);
    if (entry != entries.end()) entries.erase(entry);
    if (entries.empty()) strings_.erase(found);
  }

  void purge(int book) {
    const auto in_book = [&](const TRIE_INFO_T& info) { return info.book == book; };
    for (auto string = strings_.begin(); string != strings_.end();) {
      Entries& entries = string->second;
      entries.erase(std::remove_if(entries.begin(), entries.end(), in_book), entries.end());
      string = entries.empty() ? strings_.erase(string) : std::next(string);
    }
  }

  Entries entries(const std::string& text) const {
    const auto found = strings_.find(text);
    return found != strings_.end() ? found->second : Entries{};
  }

  int count(const std::string& prefix) const {
    if (prefix.empty()) return 1;
    std::size_t count = 0;
    auto string = strings_.lower_bound(prefix);
    for (; string != strings_.end() && begins(string->first, prefix); ++string) {
      count += string->second.size();
    }
    return static_cast<int>(count);
  }

  int search(const std::string& keys, TRIE_RESULT_T& result, bool& matched) const {
    result = {};
    std::deque<std::string> queue;
    matched = match(keys, queue);
    if (!matched) return 0;
    int steps = 0;
    for (; !queue.empty(); queue.pop_front()) {
      if (collect(queue.front(), result) && ++steps > 99) return steps;
      for (char byte = 32; byte <= 126; ++byte) {
        const std::string below = queue.front() + byte;
        if (!exists(below)) continue;
        steps += collect(below, result) ? 1 : 0;
        queue.push_back(below);
        if (steps > 99) return steps;
      }
    }
    return steps;
  }

 private:
  static bool begins(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
  }

  bool exists(const std::string& prefix) const {
    const auto string = strings_.lower_bound(prefix);
    return string != strings_.end() && begins(string->first, prefix);
  }

  bool match(const std::string& keys, std::deque<std::string>& queue) const {
    for (std::size_t n = 0; n != keys.size(); ++n) {
      const std::string row = row_of(keys[n]);
      if (n == 0) queue.emplace_back();
      for (auto level = static_cast<long>(queue.size()); level != 0; --level) {
        for (const char byte : row) {
          const std::string below = queue.front() + byte;
          if (!exists(below)) continue;
          // The first that the first key finds stays in front.
          auto place = queue.begin() + level;
          if (n == 0 && place != queue.end()) ++place;
          while (place != queue.end() && count(*place) >= count(below)) ++place;
          queue.insert(place, below);
        }
        queue.pop_front();
      }
      if (queue.empty()) return false;
    }
    return true;
  }

  static std::string row_of(char key) {
    for (const char* row : {"0 +", "1", "2abcABC", "3defDEF", "4ghiGHI", "5jklJKL", "6mnoMNO",
                            "7pqrsPQRS", "8tuvTUV", "9wxyzWXYZ", "*"}) {
      if (key != '+' && std::strchr(row, key) != nullptr) return row;
    }
    return "";
  }

  /// False when no string ends here.
  bool collect(const std::string& text, TRIE_RESULT_T& result) const {
    const auto found = strings_.find(text);
    if (found == strings_.end()) return false;
    for (const TRIE_INFO_T& info : found->second) {
      if (info.book < 0 || info.book > 11 || info.record == nullptr) continue;
      const std::uint32_t position = *static_cast<const std::uint32_t*>(info.record);
      if (position <= 499) result.records[info.book][position] = info.record;
    }
    return true;
  }

  std::map<std::string, Entries> strings_;
};

class SearchTest : public phone_test::Phone {
 protected:
  void SetUp() override {
    Phone::SetUp();
    CfgTrieReloadLocalBookInfo();
  }
  void TearDown() override {
    for (const auto& [text, record] : inserted_) decrease(text, record);
    host().lists().clear();
    CfgTrieReloadLocalBookInfo();
    Phone::TearDown();
  }

  /// Into the index and into its literal form.
  void increase(const std::string& text, int book, void* record) {
    const TRIE_INFO_T info{book, record};
    EXPECT_EQ(TrieIncreaseInfo(text.c_str(), &info), 0);
    literal_.insert(text, info);
    inserted_.emplace_back(text, record);
  }
  void decrease(const std::string& text, void* record) {
    const TRIE_INFO_T info{0, record};
    EXPECT_EQ(TrieDecreaseInfo(text.c_str(), &info), 0);
    literal_.erase(text, record);
  }

  void expect_same_list(const std::string& prefix) {
    TRIE_ENTRY_T* list = nullptr;
    ASSERT_EQ(CfgTrieSearchOfCount(prefix.c_str(), &list), literal_.count(prefix)) << prefix;
    for (const TRIE_INFO_T& info : literal_.entries(prefix)) {
      ASSERT_NE(list, nullptr) << prefix;
      ASSERT_EQ(list->info.book, info.book) << prefix;
      ASSERT_EQ(list->info.record, info.record) << prefix;
      list = list->next;
    }
    ASSERT_EQ(list, nullptr) << prefix;
  }

  void expect_same_hits(const std::string& keys) {
    TRIE_RESULT_T expected;
    bool matched = false;
    const int steps = literal_.search(keys, expected, matched);
    TRIE_RESULT_T* result = nullptr;
    ASSERT_EQ(CfgTrieSearchVague(keys.c_str(), &result), steps) << keys;
    ASSERT_EQ(result != nullptr, matched || keys.empty()) << keys;
    if (result != nullptr) ASSERT_EQ(std::memcmp(result, &expected, sizeof expected), 0) << keys;
  }

  std::string any_text(const std::vector<std::string>& letters, std::size_t longest) {
    std::string text;
    for (std::size_t length = 1 + random_() % longest; length != 0; --length) {
      text += letters[random_() % letters.size()];
    }
    return text;
  }

  LiteralIndex literal_;
  std::vector<std::pair<std::string, void*>> inserted_;
  std::minstd_rand random_{1};
};

TEST_F(SearchTest, NothingIsFoundAndOutStaysWhileTheIndexWasNeverFilled) {
  const std::string copy = on_disk("/fresh.so");  // an instance of its own
  std::filesystem::copy_file(CFGXML_LIBRARY, copy);
  void* library = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto search =
      reinterpret_cast<decltype(&CfgTrieSearchVague)>(dlsym(library, "CfgTrieSearchVague"));
  const auto count =
      reinterpret_cast<decltype(&CfgTrieSearchOfCount)>(dlsym(library, "CfgTrieSearchOfCount"));
  const auto decrease =
      reinterpret_cast<decltype(&TrieDecreaseInfo)>(dlsym(library, "TrieDecreaseInfo"));

  TRIE_RESULT_T own{};
  TRIE_RESULT_T* result = &own;
  const TRIE_INFO_T info{0, &own};
  EXPECT_EQ(search("2", &result), 0);
  EXPECT_EQ(result, &own);
  EXPECT_EQ(count("", nullptr), 0);
  EXPECT_EQ(decrease("2", &info), -1);
}

TEST_F(SearchTest, CountsTheStringsBelowAPrefixAndListsThoseThatEndThere) {
  std::int32_t first = 0;
  std::int32_t second = 1;
  increase("123", 1, &first);
  increase("124", 2, &second);
  increase("12", 3, &second);
  increase("12", 3, &second);
  TRIE_ENTRY_T* list = nullptr;
  EXPECT_EQ(CfgTrieSearchOfCount("1", &list), 4);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(CfgTrieSearchOfCount("12", &list), 4);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->info.record, &second);
  ASSERT_NE(list->next, nullptr);
  EXPECT_EQ(list->next->next, nullptr);
  EXPECT_EQ(CfgTrieSearchOfCount("", &list), 1);
  EXPECT_EQ(list, nullptr);

  decrease("12", &second);   // one of the two
  decrease("124", &first);   // not its record
  decrease("1234", &first);  // no such string
  decrease("123", &first);
  EXPECT_EQ(CfgTrieSearchOfCount("12", nullptr), 2);
  EXPECT_EQ(CfgTrieSearchOfCount("123", &list), 0);

  const TRIE_INFO_T info{0, &first};
  EXPECT_EQ(TrieIncreaseInfo("", &info), -1);
  EXPECT_EQ(TrieIncreaseInfo(nullptr, &info), -1);
  EXPECT_EQ(TrieIncreaseInfo("1", nullptr), -1);
  EXPECT_EQ(TrieDecreaseInfo("", &info), -1);
  EXPECT_EQ(TrieDecreaseInfo(nullptr, &info), -1);
  EXPECT_EQ(CfgTrieSearchOfCount(nullptr, &list), 0);
}

TEST_F(SearchTest, KeysStandForTheCharactersPrintedOnThem) {
  std::int32_t records[] = {0, 1, 2, 3, 4, 499, 500};
  increase("Bob", 0, &records[0]);
  increase("anna", 1, &records[1]);
  increase("2345", 11, &records[2]);
  increase("+4930", 0, &records[3]);
  increase(" Zed", 0, &records[4]);
  increase("0171", 0, &records[5]);
  increase("0172", 0, &records[6]);  // a place that the table does not have

  TRIE_RESULT_T* result = nullptr;
  EXPECT_EQ(CfgTrieSearchVague("2", &result), 6);
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->records[0][0], &records[0]);
  EXPECT_EQ(result->records[1][1], &records[1]);
  EXPECT_EQ(result->records[11][2], &records[2]);
  EXPECT_EQ(CfgTrieSearchVague("0", &result), 8);
  EXPECT_EQ(result->records[0][0], nullptr);
  EXPECT_EQ(result->records[0][3], &records[3]);
  EXPECT_EQ(result->records[0][4], &records[4]);
  EXPECT_EQ(result->records[0][499], &records[5]);
  EXPECT_EQ(result->records[1][0], nullptr);

  for (const char* keys : {"+", "#", "2#", "23451", "\xc3", "5"}) {
    EXPECT_EQ(CfgTrieSearchVague(keys, &result), 0) << keys;
    EXPECT_EQ(result, nullptr) << keys;
  }
  EXPECT_EQ(CfgTrieSearchVague("", &result), 0);
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->records[0][499], nullptr);
  EXPECT_EQ(CfgTrieSearchVague(nullptr, &result), 0);
  EXPECT_EQ(CfgTrieSearchVague("2", nullptr), 0);
}

TEST_F(SearchTest, AStringBelowTheKeysCountsTwoStepsAndAMatchedOneOne) {
  std::int32_t first = 0;
  std::int32_t second = 1;
  increase("12", 0, &first);
  increase("123", 0, &second);
  TRIE_RESULT_T* result = nullptr;
  EXPECT_EQ(CfgTrieSearchVague("1", &result), 4);
  EXPECT_EQ(CfgTrieSearchVague("12", &result), 3);
  EXPECT_EQ(CfgTrieSearchVague("123", &result), 1);
}

TEST_F(SearchTest, BusierPlacesAreCollectedFirstButNoneBeforeTheFirstOfTheFirstKey) {
  std::int32_t records[] = {7, 7, 7};  // of those that share a place the last one collected stays
  increase("2B", 0, &records[0]);
  increase("a2", 0, &records[1]);
  TRIE_RESULT_T* result = nullptr;
  CfgTrieSearchVague("22", &result);
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->records[0][7], &records[1]);  // equally busy: in the order of the keypad

  increase("a23", 1, &records[2]);
  CfgTrieSearchVague("22", &result);
  EXPECT_EQ(result->records[0][7], &records[0]);
  CfgTrieSearchVague("2", &result);
  EXPECT_EQ(result->records[0][7], &records[1]);
}

/// Random strings come and go. Many records share a place, so the order of the hits shows.
TEST_F(SearchTest, AnswersAsTheLiteralIndexDoes) {
  std::int32_t records[40];
  for (int i = 0; i != 40; ++i) records[i] = i % 9 == 0 ? i * 100 - 300 : i % 4;
  const int books[] = {-1, 0, 0, 0, 1, 11, 12};
  const std::vector<std::string> letters = {"2", "a", "B", "c", "0", "+",        " ",
                                            "1", "4", "9", "~", "*", "\xc3\xa4", "\x1f"};
  for (int round = 0; round != 60; ++round) {
    const std::size_t longest = round % 10 == 0 ? 90 : 2 + random_() % 10;
    for (int strings = round % 8 == 3 ? 1500 : 30; strings != 0; --strings) {
      increase(any_text(letters, longest), books[random_() % 7], &records[random_() % 40]);
    }
    std::shuffle(inserted_.begin(), inserted_.end(), random_);
    for (std::size_t left = inserted_.size() / 2; left != 0; --left) {
      decrease(inserted_.back().first, inserted_.back().second);
      inserted_.pop_back();
    }
    if (round % 4 == 0) {
      EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);  // of an empty phonebook
      literal_.purge(CFGXML_BOOK_LOCAL);
    }
    for (const auto& [text, record] : inserted_) {
      ASSERT_NO_FATAL_FAILURE(expect_same_list(text.substr(0, random_() % text.size())));
      ASSERT_NO_FATAL_FAILURE(expect_same_list(text));
    }
    ASSERT_NO_FATAL_FAILURE(expect_same_hits(""));
    for (int i = 0; i != 30; ++i) {
      ASSERT_NO_FATAL_FAILURE(expect_same_hits(any_text({"0", "1", "2", "a", "4", "9"}, 4)));
    }
  }
}

TEST_F(SearchTest, ReloadSkipsFreeSlotsAndNumbersUpToTheFirst) {
  const char* const names[] = {"bob", "Alice", "alice", "", "", "gap", "Zed"};
  for (int i = 0; i != 7; ++i) {
    contacts().Contacts[i].Id = i == 5 ? 0 : i + 1;
    contacts().Contacts[i].position = 77;
    std::snprintf(contacts().Contacts[i].DisplayName, 64, "%s", names[i]);
    std::snprintf(contacts().Contacts[i].MobileNumber, 64, "5%d", i);
    std::snprintf(contacts().Contacts[i].OtherNumber, 64, "5%d", i);
  }
  EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);
  EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);  // replaces what the first one put in
  const int positions[] = {4, 3, 2, 1, 1, 77, 77};
  for (int i = 0; i != 7; ++i) EXPECT_EQ(contacts().Contacts[i].position, positions[i]) << i;
  EXPECT_EQ(CfgTrieSearchOfCount("5", nullptr), 12);
  EXPECT_EQ(CfgTrieSearchOfCount("gap", nullptr), 0);
  EXPECT_EQ(CfgTrieSearchOfCount("Zed", nullptr), 1);

  host().lists().give_contacts(false);
  EXPECT_EQ(CfgTrieReloadLocalBookInfo(), -1);
  EXPECT_EQ(CfgTrieSearchOfCount("5", nullptr), 0);
}

TEST_F(SearchTest, PositionsAreThoseThatCountingGives) {
  for (int round = 0; round != 20; ++round) {
    host().lists().clear();
    const int count = round == 0 ? CFGXML_CONTACT_CAPACITY : static_cast<int>(random_() % 30);
    for (int i = 0; i != count; ++i) {
      contacts().Contacts[i].Id = i + 1;
      const std::string name = any_text({"a", "A", "b", "\xc3\xa4"}, 3);
      if (i % 9 != 0) std::snprintf(contacts().Contacts[i].DisplayName, 64, "%s", name.c_str());
    }
    EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);
    const auto compare = [](const CONTACT_DATA_T& left, const CONTACT_DATA_T& right) {
      return right.DisplayName[0] == '\0' ? 1 : strcasecmp(left.DisplayName, right.DisplayName);
    };
    for (int i = 0; i != count; ++i) {
      int position = 0;
      for (int j = 0; j != count; ++j) {
        const int order = compare(contacts().Contacts[i], contacts().Contacts[j]);
        position += j != i && (order > 0 || (order == 0 && j > i)) ? 1 : 0;
      }
      ASSERT_EQ(contacts().Contacts[i].position, position) << i;
    }
  }
}

/// Deleting keeps the index as taking out and putting back everything behind the contact does,
/// also when contacts and index had parted before.
TEST_F(SearchTest, DeletingMovesTheEntriesOfTheContactsBehind) {
  auto& table = contacts().Contacts;
  const auto texts = [](const CONTACT_DATA_T& contact) {
    return std::vector<std::string>{contact.DisplayName, contact.OfficeNumber, contact.MobileNumber,
                                    contact.OtherNumber};
  };
  const std::vector<std::string> numbers = {"", "", "1", "12", "123", "1234567890123456789012"};
  contact_save_init(1);
  for (int round = 0; round != 300; ++round) {
    host().lists().clear();
    literal_.purge(CFGXML_BOOK_LOCAL);
    const int count = 1 + static_cast<int>(random_() % 12);
    for (int i = 0; i != count; ++i) {
      table[i].Id = i + 1;
      std::snprintf(table[i].DisplayName, 64, "%s", any_text({"a", "b"}, 4).c_str());
      for (char* number : {table[i].OfficeNumber, table[i].MobileNumber, table[i].OtherNumber}) {
        std::snprintf(number, 32, "%s", numbers[random_() % numbers.size()].c_str());
      }
    }
    EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);
    for (int i = 0; i != count; ++i) {
      for (const std::string& text : texts(table[i])) {
        if (!text.empty()) literal_.insert(text, {CFGXML_BOOK_LOCAL, &table[i]});
      }
    }
    std::int32_t stranger = 0;
    increase("12", 1, &stranger);
    CONTACT_DATA_T& touched = table[random_() % static_cast<unsigned>(count)];
    switch (round % 8) {
      case 0:
        std::strcpy(touched.OfficeNumber, "12");
        break;
      case 1:
        std::strcpy(touched.MobileNumber, "");
        break;
      case 2:
        increase("12", CFGXML_BOOK_LOCAL, &touched);
        break;
      case 3:
        increase(texts(touched)[0], 6, &touched);
        break;
      case 4:
        decrease(texts(touched)[0], &touched);
        increase(texts(touched)[0], CFGXML_BOOK_LOCAL, &touched.Line);
        break;
      case 5:
        decrease(texts(touched)[0], &touched);
        break;
      default:
        break;  // in step
    }

    const int deleted = static_cast<int>(random_() % static_cast<unsigned>(count));
    for (int i = deleted; i != count; ++i) {
      for (const std::string& text : texts(table[i])) literal_.erase(text, &table[i]);
    }
    EXPECT_EQ(cfg_del_contact_data(table[deleted].Id), 0);
    for (int i = deleted; i != count - 1; ++i) {
      for (const std::string& text : texts(table[i])) {
        if (!text.empty()) literal_.insert(text, {CFGXML_BOOK_LOCAL, &table[i]});
      }
    }
    EXPECT_EQ(table[count - 1].Id, 0);
    increase("1", 1, &stranger);
    increase("12", 1, &stranger);
    for (int i = 0; i != count; ++i) {
      ASSERT_NO_FATAL_FAILURE(expect_same_list(table[i].DisplayName)) << round;
    }
    for (const std::string& number : numbers) {
      ASSERT_NO_FATAL_FAILURE(expect_same_list(number)) << round;
    }
    for (const char* keys : {"1", "2", "22"}) ASSERT_NO_FATAL_FAILURE(expect_same_hits(keys));
    for (const auto& [text, record] : inserted_) decrease(text, record);
    inserted_.clear();
  }
  contact_save_init(0);
}

TEST_F(SearchTest, ContactAddedDuringAReloadIsIndexedOnce) {
  constexpr int kPhonebookLock = 45081;
  CONTACT_DATA_T contact{};
  std::strcpy(contact.DisplayName, "Anna");
  ASSERT_EQ(cfg_add_contact_data(&contact), 0);

  rl_sem_lock(kPhonebookLock);
  std::thread reload([] { EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0); });
  for (int waits = 0; waits != 50 && CfgTrieSearchOfCount("Anna", nullptr) == 1; ++waits) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));  // the reload waits for the lock
  }
  std::strcpy(contact.DisplayName, "Bo");
  EXPECT_EQ(cfg_add_contact_data(&contact), 0);
  rl_sem_unlock(kPhonebookLock);
  reload.join();
  EXPECT_EQ(CfgTrieSearchOfCount("Anna", nullptr), 1);
  EXPECT_EQ(CfgTrieSearchOfCount("Bo", nullptr), 1);
}

TEST_F(SearchTest, SearchesMayOverlapChanges) {
  contact_save_init(1);
  std::atomic<bool> done{false};
  const auto search = [&] {
    TRIE_RESULT_T* result = nullptr;
    while (!done) {
      EXPECT_LE(CfgTrieSearchVague("2", &result), 100);
      EXPECT_GE(CfgTrieSearchOfCount("a", nullptr), 0);
    }
  };
  std::thread first(search);
  std::thread second(search);
  for (int i = 0; i != 200; ++i) {
    CONTACT_DATA_T contact{};
    std::snprintf(contact.DisplayName, 64, "a%d", i);
    std::snprintf(contact.OfficeNumber, 64, "2%d", i % 50);
    EXPECT_EQ(cfg_add_contact_data(&contact), 0);
    if (i % 5 == 0) EXPECT_EQ(cfg_del_contact_data(contact.Id - i % 3), 0);
    if (i % 50 == 0) EXPECT_EQ(CfgTrieReloadLocalBookInfo(), 0);
  }
  done = true;
  first.join();
  second.join();
  contact_save_init(0);
}

}  // namespace
