#include "phonebook.h"

#include <algorithm>

#include "failure.h"
#include "host.h"
#include "text.h"

namespace deskphone {
namespace {

constexpr char kDefaultGroup[] = "Default";
constexpr int kUnknownId = 4;

Subject a_contact(int id, const std::string& name = "") {
  return {"contact", "contacts", id, name};
}
Subject a_group(int id, const std::string& name = "") { return {"group", "groups", id, name}; }
Subject an_entry(int id, const std::string& name = "") {
  return {"blacklist entry", "blacklist", id, name};
}

/// The id of the newest record with this name; 0 when there is none.
int id_of(const Summaries& records, const std::string& name) {
  int id = 0;
  for (const CONTACT_SUMMARY_T& record : records) {
    if (name == record.DisplayName) id = std::max(id, record.Id);
  }
  return id;
}

GROUP_DATA_T as_data(const GROUP_SUMMARY_T& summary) {
  GROUP_DATA_T group{};
  group.Id = summary.Id;
  set_text(group.Name, "name", summary.Name);
  set_text(group.Ring, "ring", summary.Ring);
  set_text(group.Description, "description", summary.Description);
  return group;
}

}  // namespace

const std::vector<Column> kContactColumns = {{"id", "Id"},         {"name", "Name"},
                                             {"office", "Office"}, {"mobile", "Mobile"},
                                             {"other", "Other"},   {"group", "Group"}};

Phonebook::Phonebook(const Plugin& plugin)
    : get_contacts_(plugin, "cfg_get_contact_summary"),
      search_contacts_(plugin, "cfg_search_contact_summary"),
      free_contacts_(plugin, "cfg_destory_contact_summary"),
      get_contact_(plugin, "cfg_get_contact_data"),
      add_contact_(plugin, "cfg_add_contact_data"),
      change_contact_(plugin, "cfg_mod_contact_data"),
      delete_contact_(plugin, "cfg_del_contact_data"),
      delete_all_contacts_(plugin, "cfg_del_all_contacts"),
      delete_contacts_of_(plugin, "cfg_del_contacts_by_group"),
      get_groups_(plugin, "cfg_get_group_summary"),
      free_groups_(plugin, "cfg_destory_group_summary"),
      get_group_(plugin, "cfg_get_group_data"),
      add_group_(plugin, "cfg_add_group_data"),
      change_group_(plugin, "cfg_mod_group_data"),
      delete_group_(plugin, "cfg_del_group_data"),
      delete_all_groups_(plugin, "cfg_del_all_group_data"),
      get_blacklist_(plugin, "cfg_get_black_summary"),
      search_blacklist_(plugin, "cfg_search_black_info"),
      get_entry_(plugin, "cfg_get_black_data"),
      add_entry_(plugin, "cfg_add_black_data"),
      change_entry_(plugin, "cfg_set_black_data"),
      delete_entry_(plugin, "cfg_remove_black_data"),
      delete_all_blacklist_(plugin, "cfg_remove_black_all"),
      move_to_blacklist_(plugin, "cfg_mov_contact_data"),
      move_to_contacts_(plugin, "cfg_mov_black_data"),
      upload_contacts_(plugin, "cfg_upload_contact"),
      upload_blacklist_(plugin, "cfg_upload_blacklist"),
      index_contacts_(plugin, "CfgTrieReloadLocalBookInfo") {}

Summaries Phonebook::take(CONTACT_SUMMARY_T* head) const {
  Summaries contacts = copy_list(head);
  if (head != nullptr) free_contacts_(head);
  return contacts;
}

Summaries Phonebook::contacts(const std::string& group) const {
  return take(get_contacts_(group.c_str()));
}

Summaries Phonebook::search_contacts(const std::string& text) const {
  return take(search_contacts_(text.c_str()));
}

CONTACT_DATA_T Phonebook::contact(int id) const {
  CONTACT_DATA_T contact{};
  if (get_contact_(id, &contact) != 0) expect_success(kUnknownId, a_contact(id));
  return contact;
}

void Phonebook::add_contact(CONTACT_DATA_T& contact) const {
  expect_success(add_contact_(&contact), a_contact(0, contact.DisplayName));
}

void Phonebook::change_contact(CONTACT_DATA_T contact) const {
  expect_success(change_contact_(&contact), a_contact(contact.Id, contact.DisplayName));
}

void Phonebook::delete_contact(int id) const {
  const CONTACT_DATA_T old = contact(id);  // deleting an unknown id is no error to the plug-in
  expect_success(delete_contact_(id), a_contact(id, old.DisplayName));
}

void Phonebook::delete_all_contacts() const {
  expect_success(delete_all_contacts_(), a_contact(0, "(all)"));
  index_contacts();
}

void Phonebook::delete_contacts_of(const std::string& group) const {
  expect_success(delete_contacts_of_(group.c_str()), a_group(0, group));
  index_contacts();
}

std::vector<GROUP_DATA_T> Phonebook::groups() const {
  std::vector<GROUP_DATA_T> groups;
  if (const auto standard = find_group(kDefaultGroup)) groups.push_back(*standard);
  GROUP_SUMMARY_T* head = get_groups_();
  for (const GROUP_SUMMARY_T& summary : copy_list(head)) groups.push_back(as_data(summary));
  if (head != nullptr) free_groups_(head);
  return groups;
}

GROUP_DATA_T Phonebook::group(int id) const {
  GROUP_DATA_T group{};
  group.Id = id;
  if (id < 1 || get_group_(&group) != 0) expect_success(kUnknownId, a_group(id));
  return group;
}

std::optional<GROUP_DATA_T> Phonebook::find_group(const std::string& name) const {
  GROUP_DATA_T group{};
  if (name.size() >= sizeof group.Name) return std::nullopt;
  set_text(group.Name, "group", name);
  if (get_group_(&group) != 0) return std::nullopt;
  return group;
}

void Phonebook::add_group(GROUP_DATA_T& group) const {
  expect_success(add_group_(&group), a_group(0, group.Name));
}

void Phonebook::change_group(GROUP_DATA_T group) const {
  const GROUP_DATA_T old = this->group(group.Id);
  const Summaries members = contacts(old.Name);
  expect_success(change_group_(&group), a_group(group.Id, group.Name));
  if (std::string(old.Name) == group.Name) return;
  for (const CONTACT_SUMMARY_T& member : members) {
    CONTACT_DATA_T moved = contact(member.Id);
    set_text(moved.Group, "group", group.Name);
    change_contact(moved);
  }
}

void Phonebook::delete_group(int id) const {
  const GROUP_DATA_T old = group(id);
  if (std::string(old.Name) == kDefaultGroup) {
    throw Failure(
        "The group \"Default\" always exists and can not be deleted. To delete its "
        "contacts: deskphone contacts delete --group Default");
  }
  expect_success(delete_group_(id), a_group(id, old.Name));
}

void Phonebook::delete_all_groups() const {
  expect_success(delete_all_groups_(), a_group(0, "(all)"));
}

Summaries Phonebook::blacklist() const { return take(get_blacklist_()); }

Summaries Phonebook::search_blacklist(const std::string& text) const {
  return take(search_blacklist_(text.c_str()));
}

CONTACT_DATA_T Phonebook::blacklist_entry(int id) const {
  CONTACT_DATA_T entry{};
  if (get_entry_(id, &entry) != 0) expect_success(kUnknownId, an_entry(id));
  return entry;
}

void Phonebook::add_blacklist_entry(CONTACT_DATA_T& entry) const {
  expect_success(add_entry_(&entry), an_entry(0, entry.DisplayName));
}

void Phonebook::change_blacklist_entry(CONTACT_DATA_T entry) const {
  expect_success(change_entry_(&entry), an_entry(entry.Id, entry.DisplayName));
}

void Phonebook::delete_blacklist_entry(int id) const {
  const CONTACT_DATA_T old = blacklist_entry(id);
  expect_success(delete_entry_(id), an_entry(id, old.DisplayName));
}

void Phonebook::delete_all_blacklist() const {
  expect_success(delete_all_blacklist_(), an_entry(0, "(all)"));
}

CONTACT_DATA_T Phonebook::move_to_blacklist(int id) const {
  const CONTACT_DATA_T old = contact(id);
  expect_success(move_to_blacklist_(id), a_contact(id, old.DisplayName));
  return blacklist_entry(id_of(blacklist(), old.DisplayName));
}

CONTACT_DATA_T Phonebook::move_to_contacts(int id) const {
  const CONTACT_DATA_T old = blacklist_entry(id);
  expect_success(move_to_contacts_(id), an_entry(id, old.DisplayName));
  return contact(id_of(contacts(), old.DisplayName));
}

int Phonebook::upload_contacts(const char* path) const {
  const int result = upload_contacts_(path);
  index_contacts();
  return result;
}

int Phonebook::upload_blacklist(const char* path) const {
  return host::the_host().upload_blacklist(upload_blacklist_, path);
}

void Phonebook::index_contacts() const {
  if (index_contacts_() != 0) throw Failure("The phone has no contact list to search.");
}

Row row_of(const CONTACT_DATA_T& contact) {
  return {{"id", contact.Id},
          {"name", contact.DisplayName},
          {"office", contact.OfficeNumber},
          {"mobile", contact.MobileNumber},
          {"other", contact.OtherNumber},
          {"group", contact.Group},
          {"line", contact.Line},
          {"ring", contact.Ring},
          {"photo", contact.Photo}};
}

Row row_of(const CONTACT_SUMMARY_T& contact) {
  return {{"id", contact.Id},
          {"name", contact.DisplayName},
          {"office", contact.OfficeNumber},
          {"mobile", contact.MobileNumber},
          {"other", contact.OtherNumber},
          {"group", contact.Group},
          {"line", contact.Line}};
}

std::vector<Row> rows_of(const Summaries& contacts) {
  std::vector<Row> rows;
  for (const CONTACT_SUMMARY_T& contact : contacts) rows.push_back(row_of(contact));
  return rows;
}

Row row_of(const GROUP_DATA_T& group) {
  return {{"id", group.Id},
          {"name", group.Name},
          {"ring", group.Ring},
          {"description", group.Description}};
}

}  // namespace deskphone
