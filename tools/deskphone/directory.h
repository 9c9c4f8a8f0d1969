// The lists that the plug-in reads from the pages of a BroadSoft directory, and the pages, which
// the profile keeps so that every run of the program has the lists.
#pragma once

#include <cfgxml/broadsoft.h>

#include <filesystem>
#include <string>
#include <vector>

#include "phone.h"

namespace deskphone {

using Pages = std::vector<std::filesystem::path>;
using Entries = std::vector<BSFT_CONTACT_DATA_T>;

class Directory {
 public:
  explicit Directory(const Phone& phone);

  /// Fill a list from pages in their order, in place of what it held, and keep the pages. A page
  /// that is none gives a Failure that names it, and the list is left empty; the kept pages stay.
  /// What the server says of the last page is the result.
  BSFT_CONTACT_POS_T load(const Pages& pages) const;
  BSFT_CONTACT_POS_T load_simple(int list, const Pages& pages) const;

  /// The entries of the kept pages; throw Failure when there are none.
  Entries entries() const;
  Entries search(const std::string& text) const;
  BSFT_CONTACT_DATA_T entry(int index) const;
  Summaries simple(int list) const;

  /// Loads the simple lists of the kept pages into the search.
  void load_all_simple() const;

 private:
  std::filesystem::path folder_of(const std::string& name) const;
  BSFT_CONTACT_POS_T read(const Pages& pages) const;
  BSFT_CONTACT_POS_T read_simple(int list, const Pages& pages) const;
  void read_kept() const;

  const Phone& phone_;
  const Function<decltype(cfg_get_broadsoft_contact_summary)> start_;
  const Function<decltype(cfg_add_broadsoft_contact_summary_to_tail)> add_;
  const Function<decltype(cfg_get_broadsoft_conatct_pos)> get_position_;
  const Function<decltype(cfg_get_broadsoft_contact_data)> get_entry_;
  const Function<decltype(cfg_search_broadsoft_contact_info)> search_;
  const Function<decltype(cfg_destory_broadsoft_conatct_list)> free_;
  const Function<decltype(cfg_append_broadsoft_simple_contact_summary)> append_simple_;
  const Function<decltype(cfg_destory_broadsoft_simple_conatct_list)> free_simple_;
};

Row row_of(const BSFT_CONTACT_DATA_T& entry);

}  // namespace deskphone
