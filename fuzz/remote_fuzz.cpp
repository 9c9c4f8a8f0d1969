// Any bytes as the files of the five remote phonebooks, parted by NUL bytes: loaded, indexed, found
// from the keypad and by text, and taken out again.
#include <cfgxml/binding.h>
#include <cfgxml/remote.h>
#include <cfgxml/search.h>

#include "phone.h"

namespace {

constexpr std::size_t kRecords = CFGXML_BOOK_RECORDS;
constexpr const char* kFiles[CFGXML_REMOTE_BOOK_COUNT] = {
    "/tmp/remote_contact.xml0", "/tmp/remote_contact.xml1", "/tmp/remote_contact.xml2",
    "/tmp/remote_contact.xml3", "/tmp/remote_contact.xml4",
};

struct Book {
  int number;
  const CONTACT_SUMMARY_T* head;
  int count = 0;
  int strings = 0;
};

int strings_of(const CONTACT_SUMMARY_T& record) {
  return static_cast<int>(!text_of(record.DisplayName).empty()) +
         static_cast<int>(!text_of(record.OfficeNumber).empty()) +
         static_cast<int>(!text_of(record.MobileNumber).empty()) +
         static_cast<int>(!text_of(record.OtherNumber).empty());
}

Book load(int number) {
  Book book{number, cfg_get_remote_contact_summary(kFiles[number])};
  const CONTACT_SUMMARY_T* before = nullptr;
  for (const CONTACT_SUMMARY_T* record = book.head; record != nullptr; record = record->next) {
    book.strings += strings_of(*record);
    require(record->DisplayName[0] != '\0', "a record has a name");
    require(before == nullptr || std::strcmp(before->DisplayName, record->DisplayName) <= 0,
            "the records are sorted");
    before = record;
    ++book.count;
  }
  require(book.count <= static_cast<int>(kRecords), "a book fits its places");
  return book;
}

void index_book(const Book& book) {
  require(CfgTrieReloadRemoteBookInfo(book.number) == (book.head != nullptr ? 0 : -1),
          "a book with records is indexed");
  std::vector<bool> taken(static_cast<std::size_t>(book.count));
  for (const CONTACT_SUMMARY_T* record = book.head; record != nullptr; record = record->next) {
    require(record->position >= 0 && record->position < book.count, "a place of the book");
    const auto place = static_cast<std::size_t>(record->position);
    require(!taken[place], "a place is taken once");
    taken[place] = true;
  }
}

/// The details and the search by text are about the current book.
void read_book(const Book& book) {
  require(cfg_set_remote_contact_summary_clone_id(book.number) == 0, "a book can be current");
  const Nodes<CONTACT_SUMMARY_T> all = take(cfg_search_remote_contact_info(""));
  require(static_cast<int>(all.size()) == book.count, "the empty text finds all");
  CONTACT_DATA_T data{};
  const int result = cfg_get_remote_contact_data(book.head != nullptr ? book.head->Id : 1, &data);
  require(result == (book.head != nullptr ? 0 : -1), "a loaded book has details");
  require(book.head == nullptr || text_of(data.DisplayName) == text_of(book.head->DisplayName),
          "they are those of the first record with the id");
}

/// Every hit is a record of its book at its place.
void check_hits(const TRIE_RESULT_T& result, const std::vector<Book>& books) {
  std::size_t hits = 0;
  for (const auto& row : result.records) {
    for (const void* record : row) hits += record != nullptr ? 1 : 0;
  }
  for (const Book& book : books) {
    const auto& row = result.records[CFGXML_BOOK_REMOTE_FIRST + book.number];
    for (const CONTACT_SUMMARY_T* record = book.head; record != nullptr; record = record->next) {
      if (row[record->position] == record) --hits;
    }
  }
  require(hits == 0 && result.others == nullptr, "a hit is a record at its place");
}

void type(const char* keys, const std::vector<Book>& books) {
  TRIE_RESULT_T* result = nullptr;
  const int steps = CfgTrieSearchVague(keys, &result);
  require(steps >= 0 && steps <= 100 && (steps == 0 || result != nullptr), "a search has its end");
  if (result != nullptr) check_hits(*result, books);
}

void search(const std::vector<Book>& books) {
  for (const char* keys : {"", "2", "63", "0", "*"}) type(keys, books);
  for (const Book& book : books) {
    if (book.head == nullptr) continue;
    type(book.head->DisplayName, books);
    require(CfgTrieSearchOfCount(book.head->DisplayName, nullptr) >= 1, "a name is indexed");
  }
}

/// Takes a book out of the index, then frees it.
void remove(const Book& book) {
  require(CfgTrieRemoveRemoteBookInfo(book.number) == book.strings, "its strings leave the index");
  require(cfg_destory_remote_conatct_list(kFiles[book.number]) == 0, "the book is freed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Phone phone;
  std::string_view input = text_of_input(data, size);
  std::vector<Book> books;
  for (int number = 0; number < CFGXML_REMOTE_BOOK_COUNT && !input.empty(); ++number) {
    phone.write(kFiles[number], cut_part(input));
    books.push_back(load(number));
    index_book(books.back());
    read_book(books.back());
  }
  search(books);
  for (const Book& book : books) remove(book);
  books.clear();
  search(books);  // finds nothing
  return 0;
}
