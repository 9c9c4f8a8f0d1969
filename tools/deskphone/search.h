// Keypad searches and the remote phonebooks that they read beside the contacts.
#pragma once

#include <cfgxml/remote.h>
#include <cfgxml/search.h>

#include <string>
#include <vector>

#include "output.h"
#include "phonebook.h"
#include "plugin.h"

namespace deskphone {

/// What a keypad search found.
struct Hits {
  std::vector<Row> rows;  // by book, and in each by name
  bool complete;          // false when the search stopped at its limit
};

class Search {
 public:
  explicit Search(const Plugin& plugin);

  /// The records whose name or number starts with what the keys may stand for.
  Hits find(const std::string& keys) const;

  /// Loads a book's file from the profile and puts it into the index; the number of its records, 0
  /// when there is no file or it holds none.
  std::size_t load_book(int book) const;

  /// Takes a book out of the index and frees it.
  void free_book(int book) const;

  /// The records of a loaded book; with a text, those whose name or number contains it.
  Summaries book(int book) const;
  Summaries search_book(int book, const std::string& text) const;
  CONTACT_DATA_T book_record(int book, int id) const;

 private:
  const Function<decltype(CfgTrieSearchVague)> find_;
  const Function<decltype(CfgTrieReloadRemoteBookInfo)> index_book_;
  const Function<decltype(CfgTrieRemoveRemoteBookInfo)> unindex_book_;
  const Function<decltype(cfg_get_remote_contact_summary)> load_book_;
  const Function<decltype(cfg_set_remote_contact_summary_clone_id)> select_book_;
  const Function<decltype(cfg_get_remote_contact_data)> get_record_;
  const Function<decltype(cfg_search_remote_contact_info)> search_book_;
  const Function<decltype(cfg_destory_remote_conatct_list)> free_book_;
  const Function<decltype(cfg_destory_contact_summary)> free_contacts_;
};

/// The name under which a book of the search is shown: "contacts", "remote 0", "directory 0".
std::string book_name(int book);

/// The path under which the phone keeps a remote book: "/tmp/remote_contact.xml0".
std::string remote_path(int book);

}  // namespace deskphone
