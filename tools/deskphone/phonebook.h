// The plug-in's phonebook as the commands use it: lists as vectors, results that are not 0 as
// Failure.
#pragma once

#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <optional>
#include <string>
#include <vector>

#include "output.h"
#include "plugin.h"

namespace deskphone {

using Summaries = std::vector<CONTACT_SUMMARY_T>;

/// The nodes of a list, in order; their next is not to be followed.
template <typename Node>
std::vector<Node> copy_list(const Node* head) {
  std::vector<Node> nodes;
  for (const Node* node = head; node != nullptr; node = node->next) nodes.push_back(*node);
  return nodes;
}

class Phonebook {
 public:
  explicit Phonebook(const Plugin& plugin);

  /// The contacts of a group, or all for "", sorted by name.
  Summaries contacts(const std::string& group = "") const;
  Summaries search_contacts(const std::string& text) const;
  CONTACT_DATA_T contact(int id) const;
  /// Sets the record's Id.
  void add_contact(CONTACT_DATA_T& contact) const;
  void change_contact(CONTACT_DATA_T contact) const;
  void delete_contact(int id) const;
  /// The bulk deletes bring the search index back in step.
  void delete_all_contacts() const;
  void delete_contacts_of(const std::string& group) const;

  /// Every group, "Default" first.
  std::vector<GROUP_DATA_T> groups() const;
  GROUP_DATA_T group(int id) const;
  std::optional<GROUP_DATA_T> find_group(const std::string& name) const;
  void add_group(GROUP_DATA_T& group) const;
  /// The contacts of a group that gets another name stay in it.
  void change_group(GROUP_DATA_T group) const;
  void delete_group(int id) const;
  void delete_all_groups() const;

  Summaries blacklist() const;
  Summaries search_blacklist(const std::string& text) const;
  CONTACT_DATA_T blacklist_entry(int id) const;
  void add_blacklist_entry(CONTACT_DATA_T& entry) const;
  void change_blacklist_entry(CONTACT_DATA_T entry) const;
  void delete_blacklist_entry(int id) const;
  void delete_all_blacklist() const;

  /// The moves give the record a new id, and the group "Default"; they return it as it is then.
  CONTACT_DATA_T move_to_blacklist(int id) const;
  CONTACT_DATA_T move_to_contacts(int id) const;

  /// Replace the contacts or the blacklist by a file's; the plug-in's result, which is not checked.
  /// The index is brought back in step.
  int upload_contacts(const char* path) const;
  int upload_blacklist(const char* path) const;

  /// Fills the search index with the contacts.
  void index_contacts() const;

  /// The results of the functions that may be refused by a rule, for who counts them.
  int try_to_add_contact(CONTACT_DATA_T& contact) const { return add_contact_(&contact); }
  int try_to_add_group(GROUP_DATA_T& group) const { return add_group_(&group); }

 private:
  Summaries take(CONTACT_SUMMARY_T* head) const;

  const Function<decltype(cfg_get_contact_summary)> get_contacts_;
  const Function<decltype(cfg_search_contact_summary)> search_contacts_;
  const Function<decltype(cfg_destory_contact_summary)> free_contacts_;
  const Function<decltype(cfg_get_contact_data)> get_contact_;
  const Function<decltype(cfg_add_contact_data)> add_contact_;
  const Function<decltype(cfg_mod_contact_data)> change_contact_;
  const Function<decltype(cfg_del_contact_data)> delete_contact_;
  const Function<decltype(cfg_del_all_contacts)> delete_all_contacts_;
  const Function<decltype(cfg_del_contacts_by_group)> delete_contacts_of_;
  const Function<decltype(cfg_get_group_summary)> get_groups_;
  const Function<decltype(cfg_destory_group_summary)> free_groups_;
  const Function<decltype(cfg_get_group_data)> get_group_;
  const Function<decltype(cfg_add_group_data)> add_group_;
  const Function<decltype(cfg_mod_group_data)> change_group_;
  const Function<decltype(cfg_del_group_data)> delete_group_;
  const Function<decltype(cfg_del_all_group_data)> delete_all_groups_;
  const Function<decltype(cfg_get_black_summary)> get_blacklist_;
  const Function<decltype(cfg_search_black_info)> search_blacklist_;
  const Function<decltype(cfg_get_black_data)> get_entry_;
  const Function<decltype(cfg_add_black_data)> add_entry_;
  const Function<decltype(cfg_set_black_data)> change_entry_;
  const Function<decltype(cfg_remove_black_data)> delete_entry_;
  const Function<decltype(cfg_remove_black_all)> delete_all_blacklist_;
  const Function<decltype(cfg_mov_contact_data)> move_to_blacklist_;
  const Function<decltype(cfg_mov_black_data)> move_to_contacts_;
  const Function<decltype(cfg_upload_contact)> upload_contacts_;
  const Function<decltype(cfg_upload_blacklist)> upload_blacklist_;
  const Function<decltype(CfgTrieReloadLocalBookInfo)> index_contacts_;
};

/// Records as they are printed. A summary's numbers are cut to 31 characters.
Row row_of(const CONTACT_DATA_T& contact);
Row row_of(const CONTACT_SUMMARY_T& contact);
Row row_of(const GROUP_DATA_T& group);
std::vector<Row> rows_of(const Summaries& contacts);

/// The columns of a list of contacts.
extern const std::vector<Column> kContactColumns;

}  // namespace deskphone
