// The keypad search and the upkeep of its index, beside a scan over all records and beside the
// textbook trie.
#include <benchmark/benchmark.h>
#include <cfgxml/binding.h>
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "generated.h"
#include "host.h"
#include "plain_trie.h"
#include "search/trie.h"

namespace {

using generated::Person;

constexpr std::size_t kRecords = CFGXML_BOOK_RECORDS;

/// The index behind the exported functions.
struct Ours {
  static void insert(const char* text, const TRIE_INFO_T& info) { TrieIncreaseInfo(text, &info); }
  static void erase(const char* text, void* record) {
    const TRIE_INFO_T info{0, record};
    TrieDecreaseInfo(text, &info);
  }
};

template <typename Record>
std::array<char*, 4> texts_of(Record& record) {
  return {record.DisplayName, record.OfficeNumber, record.MobileNumber, record.OtherNumber};
}

template <typename Index, typename Record>
void insert(Index& index, int book, Record& record) {
  for (const char* text : texts_of(record)) {
    if (*text != '\0') index.insert(text, {book, &record});
  }
}

template <typename Record>
void insert(cfgxml::search::Trie& trie, int book, Record& record) {
  const auto [name, office, mobile, other] = texts_of(record);
  trie.insert({name, office, mobile, other}, {book, &record});
}

template <typename Index, typename Record>
void erase(Index& index, Record& record) {
  for (const char* text : texts_of(record)) {
    if (*text != '\0') index.erase(text, &record);
  }
}

/// The place of each name, counted for each among all the others.
void number_by_counting(CONTACT_DATA_T* contacts, std::size_t count) {
  const auto compare = [](const char* left, const char* right) {
    return *right == '\0' ? 1 : rl_strcasecmp(left, right);
  };
  for (std::size_t i = 0; i != count; ++i) {
    std::int32_t position = 0;
    for (std::size_t j = 0; j != count; ++j) {
      const int order = compare(contacts[i].DisplayName, contacts[j].DisplayName);
      if (j != i && (order > 0 || (order == 0 && j > i))) ++position;
    }
    contacts[i].position = position;
  }
}

CONTACT_DATA_T* contacts() { return host::the_host().lists().contacts().Contacts; }

/// Fills the host's contact table with the first `count` of 500 people, and indexes it.
void fill_local_book(std::size_t count) {
  static const std::vector<Person> people = generated::people(kRecords, 1);
  host::the_host().lists().clear();
  for (std::size_t i = 0; i != count; ++i) {
    contacts()[i] = generated::contact(people[i], static_cast<int>(i) + 1);
  }
  CfgTrieReloadLocalBookInfo();
}

/// The books 1 to 11, in the index while they live.
class OtherBooks {
 public:
  OtherBooks() {
    for (int book = 1; book != CFGXML_BOOK_COUNT; ++book) add_book(book);
  }
  ~OtherBooks() {
    for (const auto& [book, records] : books_) {
      for (const auto& record : records) {
        for (const char* text : texts_of(*record)) Ours::erase(text, record.get());
      }
    }
  }

  struct Book {
    int number;
    std::vector<std::unique_ptr<CONTACT_SUMMARY_T>> records;
  };
  const std::vector<Book>& books() const { return books_; }
  const std::vector<Person>& people() const { return people_; }

 private:
  void add_book(int number) {
    Book& book = books_.emplace_back(Book{number, {}});
    std::vector<Person> people = generated::people(kRecords, static_cast<unsigned>(number) + 1);
    std::sort(people.begin(), people.end(), [](const Person& left, const Person& right) {
      return rl_strcasecmp(left.name.c_str(), right.name.c_str()) < 0;
    });
    for (const Person& person : people) {
      const CONTACT_DATA_T contact = generated::contact(person, 1);
      auto record = std::make_unique<CONTACT_SUMMARY_T>();
      record->position = static_cast<std::int32_t>(book.records.size());
      std::memcpy(record->DisplayName, contact.DisplayName, sizeof record->DisplayName);
      std::memcpy(record->OfficeNumber, contact.OfficeNumber, sizeof record->OfficeNumber);
      std::memcpy(record->MobileNumber, contact.MobileNumber, sizeof record->MobileNumber);
      std::memcpy(record->OtherNumber, contact.OtherNumber, sizeof record->OtherNumber);
      if (!book.records.empty()) book.records.back()->next = record.get();
      Ours ours;
      insert(ours, number, *record);
      book.records.push_back(std::move(record));
    }
    people_.insert(people_.end(), people.begin(), people.end());
  }

  std::vector<Book> books_;
  std::vector<Person> people_;
};

/// The plain way without an index: every text of every record against the keys.
class Scan {
 public:
  Scan() {
    std::fill(std::begin(rows_), std::end(rows_), kNoRow);
    constexpr const char* kRows[] = {"0 +",     "1",         "2abcABC", "3defDEF",
                                     "4ghiGHI", "5jklJKL",   "6mnoMNO", "7pqrsPQRS",
                                     "8tuvTUV", "9wxyzWXYZ", "*"};
    for (std::size_t row = 0; row != std::size(kRows); ++row) {
      for (const char* sign = kRows[row]; *sign != '\0'; ++sign) {
        rows_[static_cast<unsigned char>(*sign)] = static_cast<std::uint8_t>(row);
      }
    }
  }

  bool start(const std::string& keys, TRIE_RESULT_T& table) {
    std::memset(&table, 0, sizeof table);
    length_ = keys.size();
    for (std::size_t i = 0; i != length_; ++i)
      typed_[i] = rows_[static_cast<unsigned char>(keys[i])];
    return std::find(typed_, typed_ + length_, kNoRow) == typed_ + length_;
  }

  template <typename Record>
  void look_at(int book, Record& record, TRIE_RESULT_T& table) const {
    if (begins(record.DisplayName) || begins(record.OfficeNumber) || begins(record.MobileNumber) ||
        begins(record.OtherNumber)) {
      table.records[book][record.position] = &record;
    }
  }

 private:
  static constexpr std::uint8_t kNoRow = 0xff;

  bool begins(const char* text) const {
    for (std::size_t i = 0; i != length_; ++i) {
      if (rows_[static_cast<unsigned char>(text[i])] != typed_[i]) return false;
    }
    return true;
  }

  std::uint8_t rows_[256];
  std::uint8_t typed_[64] = {};
  std::size_t length_ = 0;
};

enum class Books { kLocal, kAll };

/// The books of a keystroke and what is typed.
struct Phone {
  explicit Phone(Books which) {
    fill_local_book(kRecords);
    std::vector<Person> people = generated::people(kRecords, 1);
    if (which == Books::kAll) {
      others = std::make_unique<OtherBooks>();
      people.insert(people.end(), others->people().begin(), others->people().end());
    }
    keys = generated::keys_for(people, 4096, 7);
  }

  template <typename Visit>
  void for_each_record(Visit visit) {
    for (std::size_t i = 0; i != kRecords; ++i) visit(0, contacts()[i]);
    if (others == nullptr) return;
    for (const OtherBooks::Book& book : others->books()) {
      CONTACT_SUMMARY_T* record = book.records.front().get();
      for (; record != nullptr; record = record->next) visit(book.number, *record);
    }
  }

  const std::string& next_keys() { return keys[typed++ % keys.size()]; }

  std::unique_ptr<OtherBooks> others;
  std::vector<std::string> keys;
  std::size_t typed = 0;
};

TRIE_RESULT_T plain_result;

void keystroke_ours(benchmark::State& state, Books which) {
  Phone phone(which);
  for ([[maybe_unused]] auto _ : state) {
    TRIE_RESULT_T* result = nullptr;
    benchmark::DoNotOptimize(CfgTrieSearchVague(phone.next_keys().c_str(), &result));
    benchmark::ClobberMemory();
  }
}

/// What no search can do without: a clear table, and one record looked at for each of the 100
/// steps.
void keystroke_floor(benchmark::State& state, Books which, double goal) {
  Phone phone(which);
  std::vector<std::pair<int, void*>> records;
  phone.for_each_record([&](int book, auto& record) { records.emplace_back(book, &record); });
  std::size_t next = 0;
  for ([[maybe_unused]] auto _ : state) {
    std::memset(&plain_result, 0, sizeof plain_result);
    for (int i = 0; i != 100; ++i) {
      const auto [book, record] = records[next = (next + 37) % records.size()];
      plain_result.records[book][*static_cast<std::int32_t*>(record)] = record;
    }
    benchmark::ClobberMemory();
  }
  state.counters["goal"] = 1 / goal;
}

void keystroke_scan(benchmark::State& state, Books which) {
  Phone phone(which);
  Scan scan;
  for ([[maybe_unused]] auto _ : state) {
    if (scan.start(phone.next_keys(), plain_result)) {
      phone.for_each_record(
          [&](int book, auto& record) { scan.look_at(book, record, plain_result); });
    }
    benchmark::ClobberMemory();
  }
}

void keystroke_textbook(benchmark::State& state, Books which) {
  Phone phone(which);
  plain::Trie trie;
  phone.for_each_record([&](int book, auto& record) { insert(trie, book, record); });
  for ([[maybe_unused]] auto _ : state) {
    bool matched = false;
    benchmark::DoNotOptimize(trie.search(phone.next_keys().c_str(), plain_result, matched));
    benchmark::ClobberMemory();
  }
}

double heap_in_use() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<double>(heap.uordblks + heap.hblkhd);
}

template <typename Trie>
void insert_all(Trie& trie, Phone& phone) {
  phone.for_each_record([&](int book, auto& record) { insert(trie, book, record); });
}

std::vector<const char*> strings_of(Phone& phone) {
  std::vector<const char*> strings;
  phone.for_each_record([&](int /*book*/, auto& record) {
    for (const char* text : texts_of(record)) {
      if (*text != '\0') strings.push_back(text);
    }
  });
  return strings;
}

/// What one indexed string takes up on the heap.
template <typename Trie>
double bytes_per_string(Books which) {
  Phone phone(which);
  const double before = heap_in_use();
  Trie trie;
  insert_all(trie, phone);
  return (heap_in_use() - before) / static_cast<double>(strings_of(phone).size());
}

/// The strings in their order, without an index.
void sort_strings(benchmark::State& state, Books which, double goal) {
  Phone phone(which);
  const std::vector<const char*> strings = strings_of(phone);
  for ([[maybe_unused]] auto _ : state) {
    std::vector<const char*> sorted = strings;
    std::sort(sorted.begin(), sorted.end(),
              [](const char* left, const char* right) { return std::strcmp(left, right) < 0; });
    benchmark::ClobberMemory();
  }
  state.counters["goal"] = 1 / goal;
}

template <typename Trie>
void build_all(benchmark::State& state) {
  state.counters["bytes"] = bytes_per_string<Trie>(Books::kAll);
  state.counters["bytes goal"] = 36;
  Phone phone(Books::kAll);
  for ([[maybe_unused]] auto _ : state) {
    auto trie = std::make_unique<Trie>();
    insert_all(*trie, phone);
    state.PauseTiming();
    trie.reset();
    state.ResumeTiming();
  }
}

void rebuild_ours(benchmark::State& state, Books which) {
  state.counters["bytes"] = bytes_per_string<cfgxml::search::Trie>(Books::kLocal);
  const Phone phone(which);
  for ([[maybe_unused]] auto _ : state) CfgTrieReloadLocalBookInfo();
}

void rebuild_textbook(benchmark::State& state) {
  state.counters["bytes"] = bytes_per_string<plain::Trie>(Books::kLocal);
  state.counters["bytes goal"] = 45;
  fill_local_book(kRecords);
  plain::Trie trie;
  for ([[maybe_unused]] auto _ : state) {
    trie.purge(0);
    for (std::size_t i = 0; i != kRecords; ++i) insert(trie, 0, contacts()[i]);
    number_by_counting(contacts(), kRecords);
  }
}

void delete_first_ours(benchmark::State& state) {
  fill_local_book(kRecords);
  contact_save_init(1);
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    CONTACT_DATA_T again = contacts()[0];
    state.ResumeTiming();
    cfg_del_contact_data(again.Id);
    state.PauseTiming();
    cfg_add_contact_data(&again);
    state.ResumeTiming();
  }
  contact_save_init(0);
  host::the_host().saver().forget();
}

/// Only the strings of those that move: 4 x 499 removed and 4 x 499 inserted.
template <typename Index>
void delete_first_again(benchmark::State& state) {
  fill_local_book(kRecords);
  Index index;
  if constexpr (!std::is_same_v<Index, Ours>) {  // ours holds the contacts already
    for (std::size_t i = 0; i != kRecords; ++i) insert(index, 0, contacts()[i]);
  }
  for ([[maybe_unused]] auto _ : state) {
    for (std::size_t i = 1; i != kRecords; ++i) erase(index, contacts()[i]);
    for (std::size_t i = 1; i != kRecords; ++i) insert(index, 0, contacts()[i]);
  }
}

void add_ours(benchmark::State& state) {
  fill_local_book(kRecords - 1);
  contact_save_init(1);
  CONTACT_DATA_T contact = generated::contact(generated::people(kRecords, 1).back(), 0);
  for ([[maybe_unused]] auto _ : state) {
    cfg_add_contact_data(&contact);
    state.PauseTiming();
    cfg_del_contact_data(contact.Id);
    state.ResumeTiming();
  }
  contact_save_init(0);
  host::the_host().saver().forget();
}

void change_ours(benchmark::State& state) {
  fill_local_book(kRecords - 1);
  contact_save_init(1);
  CONTACT_DATA_T contact = generated::contact(generated::people(kRecords, 1).back(), 250);
  CONTACT_DATA_T other = contacts()[249];
  for ([[maybe_unused]] auto _ : state) {
    cfg_mod_contact_data(&contact);
    std::swap(contact, other);
  }
  contact_save_init(0);
  host::the_host().saver().forget();
}

void rebuild_499(benchmark::State& state) {
  fill_local_book(kRecords - 1);
  for ([[maybe_unused]] auto _ : state) CfgTrieReloadLocalBookInfo();
}

BENCHMARK_CAPTURE(keystroke_ours, local, Books::kLocal)->Name("keystroke, 500 contacts:ours");
BENCHMARK_CAPTURE(keystroke_scan, local, Books::kLocal)
    ->Name("keystroke, 500 contacts:linear scan");
BENCHMARK_CAPTURE(keystroke_textbook, local, Books::kLocal)
    ->Name("keystroke, 500 contacts:textbook trie");
BENCHMARK_CAPTURE(keystroke_ours, all, Books::kAll)->Name("keystroke, twelve full books:ours");
BENCHMARK_CAPTURE(keystroke_scan, all, Books::kAll)
    ->Name("keystroke, twelve full books:linear scan");
BENCHMARK_CAPTURE(keystroke_textbook, all, Books::kAll)
    ->Name("keystroke, twelve full books:textbook trie");

BENCHMARK_CAPTURE(keystroke_floor, local, Books::kLocal, 1.5)
    ->Name("keystroke, 500 contacts:clear table and 100 records");
BENCHMARK_CAPTURE(keystroke_floor, all, Books::kAll, 3)
    ->Name("keystroke, twelve full books:clear table and 100 records");

BENCHMARK_CAPTURE(rebuild_ours, local, Books::kLocal)
    ->Name("rebuild the local index, 500 contacts:ours");
BENCHMARK(rebuild_textbook)->Name("rebuild the local index, 500 contacts:textbook trie, counting");
BENCHMARK_CAPTURE(sort_strings, local, Books::kLocal, 1.7)
    ->Name("rebuild the local index, 500 contacts:sort the strings");
BENCHMARK_CAPTURE(rebuild_ours, all, Books::kAll)
    ->Name("rebuild the local index, other books full:ours");
BENCHMARK_CAPTURE(sort_strings, beside_others, Books::kLocal, 1.7)
    ->Name("rebuild the local index, other books full:sort the strings");

BENCHMARK_TEMPLATE(build_all, cfgxml::search::Trie)->Name("index twelve full books:ours");
BENCHMARK_TEMPLATE(build_all, plain::Trie)->Name("index twelve full books:textbook trie");
BENCHMARK_CAPTURE(sort_strings, all, Books::kAll, 1.3)
    ->Name("index twelve full books:sort the strings");

BENCHMARK(delete_first_ours)->Name("delete the first of 500 contacts:ours");
BENCHMARK_TEMPLATE(delete_first_again, plain::Trie)
    ->Name("delete the first of 500 contacts:again, textbook trie");
BENCHMARK_TEMPLATE(delete_first_again, Ours)
    ->Name("delete the first of 500 contacts:again, our index");

BENCHMARK(add_ours)->Name("add a contact to 499:ours");
BENCHMARK(rebuild_499)->Name("add a contact to 499:a rebuild");
BENCHMARK(change_ours)->Name("change one of 499 contacts:ours");
BENCHMARK(rebuild_499)->Name("change one of 499 contacts:a rebuild");

}  // namespace
