#include "search.h"

#include <fmt/format.h>

#include "failure.h"

namespace deskphone {
namespace {

constexpr int kStepLimit = 100;

template <typename Record>
Row hit(int book, const void* record) {
  Row row = {{"book", book_name(book)}};
  row.update(row_of(*static_cast<const Record*>(record)));
  return row;
}

}  // namespace

Search::Search(const Plugin& plugin)
    : find_(plugin, "CfgTrieSearchVague"),
      index_book_(plugin, "CfgTrieReloadRemoteBookInfo"),
      unindex_book_(plugin, "CfgTrieRemoveRemoteBookInfo"),
      load_book_(plugin, "cfg_get_remote_contact_summary"),
      select_book_(plugin, "cfg_set_remote_contact_summary_clone_id"),
      get_record_(plugin, "cfg_get_remote_contact_data"),
      search_book_(plugin, "cfg_search_remote_contact_info"),
      free_book_(plugin, "cfg_destory_remote_conatct_list"),
      free_contacts_(plugin, "cfg_destory_contact_summary") {}

Hits Search::find(const std::string& keys) const {
  TRIE_RESULT_T* result = nullptr;
  const int steps = find_(keys.c_str(), &result);
  Hits hits{{}, steps < kStepLimit};
  if (result == nullptr) return hits;
  for (int book = 0; book < CFGXML_BOOK_COUNT; ++book) {
    for (const void* record : result->records[book]) {
      if (record == nullptr) continue;
      hits.rows.push_back(book == CFGXML_BOOK_LOCAL ? hit<CONTACT_DATA_T>(book, record)
                                                    : hit<CONTACT_SUMMARY_T>(book, record));
    }
  }
  return hits;
}

std::size_t Search::load_book(int book) const {
  const std::size_t records = copy_list(load_book_(remote_path(book).c_str())).size();
  if (records > 0) index_book_(book);
  return records;
}

void Search::free_book(int book) const {
  unindex_book_(book);
  free_book_(remote_path(book).c_str());
}

Summaries Search::book(int book) const { return copy_list(load_book_(remote_path(book).c_str())); }

Summaries Search::search_book(int book, const std::string& text) const {
  select_book_(book);
  CONTACT_SUMMARY_T* head = search_book_(text.c_str());
  Summaries records = copy_list(head);
  if (head != nullptr) free_contacts_(head);
  return records;
}

CONTACT_DATA_T Search::book_record(int book, int id) const {
  select_book_(book);
  CONTACT_DATA_T record{};
  record.Id = id;
  if (get_record_(id, &record) != 0 || record.DisplayName[0] == '\0') {
    throw Failure(
        fmt::format("The remote book {0} has no record with the id {1}. The ids are in "
                    "'deskphone remote list --book {0}'.",
                    book, id));
  }
  return record;
}

std::string book_name(int book) {
  if (book == CFGXML_BOOK_LOCAL) return "contacts";
  if (book < CFGXML_BOOK_BROADSOFT_FIRST) {
    return fmt::format("remote {}", book - CFGXML_BOOK_REMOTE_FIRST);
  }
  return fmt::format("directory {}", book - CFGXML_BOOK_BROADSOFT_FIRST);
}

std::string remote_path(int book) { return fmt::format("/tmp/remote_contact.xml{}", book); }

}  // namespace deskphone
