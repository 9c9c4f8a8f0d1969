// Contacts, groups, blacklist, their files and their saving.
#include <cfgxml/binding.h>
#include <cfgxml/csv.h>
#include <cfgxml/remote.h>

#include <cstring>
#include <utility>

#include "calls/files.h"
#include "calls/world.h"

namespace calls {
namespace {

/// A list comes sorted by name; frees it.
void take(World& world, const char* call, CONTACT_SUMMARY_T* head) {
  for (const CONTACT_SUMMARY_T* node = head; node != nullptr && node->next != nullptr;
       node = node->next) {
    world.require(std::strcmp(node->DisplayName, node->next->DisplayName) <= 0,
                  std::string(call) + " gave a list that is not sorted");
  }
  if (head != nullptr) cfg_destory_contact_summary(head);
}

/// The path of a file that only this caller writes.
std::string own_file(const char* extension) {
  thread_local const std::string name = [] {
    static std::atomic<int> callers{0};
    return "/import-" + std::to_string(++callers);
  }();
  return name + extension;
}

void list_contacts(World& world, Choices& choices) {
  const std::string filter = choices.flag() ? choices.group() : "All Contacts";
  take(world, "cfg_get_contact_summary", cfg_get_contact_summary(Text(choices, filter)));
}

void search_contacts(World& world, Choices& choices) {
  take(world, "cfg_search_contact_summary",
       cfg_search_contact_summary(Text(choices, choices.word())));
}

void get_contact(World& world, Choices& choices) {
  CONTACT_DATA_T contact;
  const int result = cfg_get_contact_data(choices.id(), choices.argument(contact));
  world.expect_result("cfg_get_contact_data", result, {0, -1});
}

void add_contact(World& world, Choices& choices) {
  CONTACT_DATA_T contact = choices.contact();
  const int result = cfg_add_contact_data(choices.argument(contact));
  world.expect_result("cfg_add_contact_data", result, {0, 7, 17, -1});
}

/// As the screens do it: reads the record, changes a text or two, and writes it back.
void change_contact(World& world, Choices& choices) {
  CONTACT_DATA_T contact = choices.contact();
  const HostLock hold(kPhonebookLock);
  CONTACT_DATA_T stored;
  if (cfg_get_contact_data(contact.Id, &stored) == 0) {
    contact.position = stored.position;
    if (choices.flag()) std::memcpy(contact.DisplayName, stored.DisplayName, 4 * 64);
  }
  if (choices.odd()) {
    contact.position = choices.odd_number();
    world.set_positions_kept(false);
  }
  const int result = cfg_mod_contact_data(choices.argument(contact));
  world.expect_result("cfg_mod_contact_data", result, {0, 4, 7, -1});
}

void delete_contact(World& world, Choices& choices) {
  world.expect_result("cfg_del_contact_data", cfg_del_contact_data(choices.id()), {0, -1});
}

/// A change after which the index is to be built afresh, which careful callers never forget.
template <typename Change>
void in_bulk(World& world, Choices& choices, Change change) {
  world.fall_behind();
  change();
  if (choices.odd()) return;
  world.expect_result("CfgTrieReloadLocalBookInfo", CfgTrieReloadLocalBookInfo(), {0});
  world.set_positions_kept(true);
  world.catch_up();
}

void delete_contacts(World& world, Choices& choices) {
  in_bulk(world, choices, [&] {
    const int result = choices.number(0, 9) == 0
                           ? cfg_del_all_contacts()
                           : cfg_del_contacts_by_group(Text(choices, choices.group()));
    world.expect_result("a bulk delete", result, {0, -1});
  });
}

void reset_ring_or_photo(World& world, Choices& choices) {
  const Text name(choices, choices.flag() ? "Ring1" : "Photo1");
  world.expect_result("cfg_del_contact_ring_info", cfg_del_contact_ring_info(name), {0, -1});
  world.expect_result("cfg_del_contact_photo_info", cfg_del_contact_photo_info(name), {0, -1});
}

GROUP_DATA_T group_of(Choices& choices) {
  GROUP_DATA_T group{};
  // Ids from 2 on: a careful caller takes them from the summary, which leaves "Default" out.
  group.Id = choices.odd() ? choices.odd_number() : choices.number(2, 9);
  fill(group.Name, choices.group());
  fill(group.Ring, choices.word());
  fill(group.Description, choices.name());
  return group;
}

void read_groups(World& world, Choices& choices) {
  if (GROUP_SUMMARY_T* groups = cfg_get_group_summary()) cfg_destory_group_summary(groups);
  GROUP_DATA_T group = group_of(choices);
  world.expect_result("cfg_get_group_data", cfg_get_group_data(choices.argument(group)), {0, -1});
}

void add_group(World& world, Choices& choices) {
  GROUP_DATA_T group = group_of(choices);
  const int result = cfg_add_group_data(choices.argument(group));
  world.expect_result("cfg_add_group_data", result, {0, 7, 14, 16, -1});
}

void change_group(World& world, Choices& choices) {
  GROUP_DATA_T group = group_of(choices);
  const int result = cfg_mod_group_data(choices.argument(group));
  world.expect_result("cfg_mod_group_data", result, {0, 4, 7, -1});
}

void delete_groups(World& world, Choices& choices) {
  const int result = choices.number(0, 5) == 0 ? cfg_del_all_group_data()
                                               : cfg_del_group_data(group_of(choices).Id);
  world.expect_result("cfg_del_group_data", result, {0, -1});
}

void read_blacklist(World& world, Choices& choices) {
  take(world, "cfg_get_black_summary", cfg_get_black_summary());
  take(world, "cfg_search_black_info", cfg_search_black_info(Text(choices, choices.word())));
  CONTACT_DATA_T entry;
  const int result = cfg_get_black_data(choices.id(), choices.argument(entry));
  world.expect_result("cfg_get_black_data", result, {0, -1});
}

void add_black(World& world, Choices& choices) {
  CONTACT_DATA_T entry = choices.contact();
  const int result = cfg_add_black_data(choices.argument(entry));
  world.expect_result("cfg_add_black_data", result, {0, 7, 18, -1});
}

void change_black(World& world, Choices& choices) {
  CONTACT_DATA_T entry = choices.contact();
  const int result = cfg_set_black_data(choices.argument(entry));
  world.expect_result("cfg_set_black_data", result, {0, 4, 7, -1});
}

void delete_black(World& world, Choices& choices) {
  const int result =
      choices.number(0, 40) == 0 ? cfg_remove_black_all() : cfg_remove_black_data(choices.id());
  world.expect_result("cfg_remove_black_data", result, {0, -1});
}

void move(World& world, Choices& choices) {
  const int id = choices.id();
  const int result = choices.flag() ? cfg_mov_contact_data(id) : cfg_mov_black_data(id);
  world.expect_result("a move", result, {0, 7, 17, 18, -1});
}

/// What runs under its caller's lock.
void check_names(World& world, Choices& choices) {
  const HostLock hold(kPhonebookLock);
  const Text name(choices, choices.flag() ? choices.name() : choices.group());
  const int id = choices.flag() ? -1 : choices.id();
  world.expect_result("is_name_in_group", is_name_in_group(name, id), {0, 1});
  world.expect_result("is_name_in_contact", is_name_in_contact(name, id), {0, 1});
  world.expect_result("is_name_in_black", is_name_in_black(name, id), {0, 1});
  world.expect_result("contact_data_sync", contact_data_sync(), {0});
}

void name_caller(World& world, Choices& choices) {
  const Text number(choices, choices.phone_number());
  const Text shown(choices, choices.name());
  char* name = cfg_get_contact_name(number, shown, choices.line());
  world.require(name == nullptr || std::strlen(name) < 64, "cfg_get_contact_name gave a long name");
  delete[] name;
}

/// What a reader skipped is still in the file: the caller has the file written again.
void save_what_was_read(World& world, const char* call, int result) {
  world.expect_result(call, result, {0, 16, 17, 18, 19, -1});
  if (result > 0) contact_save();
}

void load_contacts(World& world, Choices& choices) {
  in_bulk(world, choices, [&] {
    const HostLock hold(kPhonebookLock);
    save_what_was_read(world, "contact_init", contact_init(cfg_get_contact_list()));
  });
}

void load_blacklist(World& world, Choices& /*choices*/) {
  const HostLock hold(kPhonebookLock);
  const int result = black_init(cfg_get_black_list());
  world.expect_result("black_init", result, {0, 18, 19, -1});
}

void import_contacts(World& world, Choices& choices) {
  const bool csv = choices.flag();
  const std::string path = world.write(own_file(csv ? ".csv" : ".xml"),
                                       csv ? contact_csv_file(choices) : contact_file(choices));
  in_bulk(world, choices, [&] {
    const HostLock hold(kPhonebookLock);
    save_what_was_read(world, "cfg_upload_contact", cfg_upload_contact(Text(choices, path)));
  });
}

void import_blacklist(World& world, Choices& choices) {
  const std::string path = world.write(own_file(".xml"), blacklist_file(choices));
  const int result = cfg_upload_blacklist(Text(choices, path));
  world.expect_result("cfg_upload_blacklist", result, {0, 18, 19, -1});
}

/// Community data: neither the phonebook nor any lock is needed to read it.
void convert_community_file(World& world, Choices& choices) {
  const std::string path = world.write(own_file(".csv"), contact_csv_file(choices));
  COMMUNITY_DATA_T* data = get_community_contact_csv(Text(choices, path));
  if (data == nullptr) return;
  const std::string target = world.on_disk(own_file("-community.xml"));
  world.expect_result("save_community_xml", save_community_xml(Text(choices, target), data),
                      {0, -1});
  while (data->Groups != nullptr) rl_free(std::exchange(data->Groups, data->Groups->next));
  while (data->Contacts != nullptr) rl_free(std::exchange(data->Contacts, data->Contacts->next));
  rl_free(data);
}

/// The export reads the groups and takes no lock.
void export_contacts(World& world, Choices& choices) {
  const HostLock hold(kPhonebookLock);
  CONTACT_SUMMARY_T* contacts = cfg_get_contact_summary("");
  const int result =
      save_contact_csv(Text(choices, world.on_disk(own_file("-export.csv"))), contacts);
  world.expect_result("save_contact_csv", result, {0, -1});
  if (contacts != nullptr) cfg_destory_contact_summary(contacts);
}

/// As the host's saver does it: with the phonebook's lock around the writes of its files, so that
/// none crosses an import.
void write_files(World& world, Choices& choices) {
  int result = -1;
  if (choices.flag()) {
    result = history_delay_save();
  } else {
    const HostLock hold(kPhonebookLock);
    result = choices.flag() ? contact_delay_save() : black_delay_save();
  }
  world.expect_result("a delayed save", result, {0});
}

void switch_saving(World& /*world*/, Choices& choices) {
  const int deferred = choices.number(0, 15) != 0 ? 1 : 0;
  contact_save_init(deferred);
  black_save_init(deferred);
  history_save_init(deferred);
}

}  // namespace

const std::vector<Call> kPhonebookCalls = {
    {"list contacts", 6, list_contacts},
    {"search contacts", 6, search_contacts},
    {"read a contact", 6, get_contact},
    {"add a contact", 32, add_contact},
    {"change a contact", 12, change_contact},
    {"delete a contact", 8, delete_contact},
    {"bulk delete", 1, delete_contacts},
    {"ring and photo", 2, reset_ring_or_photo},
    {"read groups", 4, read_groups},
    {"add a group", 4, add_group},
    {"change a group", 3, change_group},
    {"delete groups", 2, delete_groups},
    {"read the blacklist", 4, read_blacklist},
    {"add to the blacklist", 8, add_black},
    {"change the blacklist", 6, change_black},
    {"delete from the blacklist", 4, delete_black},
    {"move a record", 8, move},
    {"check names", 4, check_names},
    {"name a caller", 6, name_caller},
    {"load contacts", 1, load_contacts},
    {"load the blacklist", 1, load_blacklist},
    {"import contacts", 1, import_contacts},
    {"import a blacklist", 1, import_blacklist},
    {"convert a community file", 1, convert_community_file},
    {"export contacts", 1, export_contacts},
    {"write a file now", 1, write_files},
    {"switch saving", 1, switch_saving},
};

}  // namespace calls
