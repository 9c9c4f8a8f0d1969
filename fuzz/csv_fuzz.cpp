// Any bytes as a contact CSV file: every reader of it, and the export of what was read.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "input_file.h"
#include "phone.h"

namespace {

void check_group_ids(const CONTACT_DATA_LIST_T& list) {
  int used = 0;
  for (const GROUP_DATA_T& group : list.Groups) {
    if (group.Id < 1) break;
    require(group.Id == ++used, "groups are numbered from 1");
  }
}

/// Names are unique when the list is the host's own; the blacklist's never come in.
void check_contacts(const CONTACT_DATA_LIST_T& list, bool own, const std::string& black_name) {
  Names names;
  int used = 0;
  for (const CONTACT_DATA_T& contact : list.Contacts) {
    if (contact.Id < 1) {
      require(contact.Id == 0 && text_of(contact.DisplayName).empty());
      continue;
    }
    require(contact.Id == ++used);
    const std::string name = text_of(contact.DisplayName);
    require(name != black_name);
    require(name.empty() || names.insert(name).second || !own);
    check_texts(contact);
  }
}

void import(const char* path, CONTACT_DATA_LIST_T& list, bool own) {
  BLACK_DATA_LIST_T& blacklist = *cfg_get_black_list();
  blacklist.Entries[0].Id = 1;
  rl_strcpy_s(blacklist.Entries[0].DisplayName, sizeof blacklist.Entries[0].DisplayName, "Spam");
  const int result = get_contact_csv(path, &list);
  require(result == 0 || result == 16 || result == 17 || result == 19);
  check_groups(list);
  check_group_ids(list);
  check_contacts(list, own, "Spam");
}

void export_again(const char* path) {
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  require(save_contact_csv(path, summary) == 0);
  cfg_destory_contact_summary(summary);
  require(is_valid_contact_file_csv(path) == 1);
}

void read_community(const char* path) {
  COMMUNITY_DATA_T* data = get_community_contact_csv(path);
  int contacts = 0;
  for (COMMUNITY_CONTACT_T* node = data->Contacts; node != nullptr;) {
    require(node->Contact.Id == ++contacts);
    rl_free(std::exchange(node, node->next));
  }
  require(contacts <= CFGXML_CONTACT_CAPACITY);
  Names names;
  for (GROUP_SUMMARY_T* group = data->Groups; group != nullptr;) {
    require(names.insert(text_of(group->Name)).second);
    require(group->Id == static_cast<int>(names.size()));
    rl_free(std::exchange(group, group->next));
  }
  rl_free(data);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Phone phone;
  static const InputFile file;
  static const std::string exported = phone.on_disk("/export.csv");
  static const auto other_list = std::make_unique<CONTACT_DATA_LIST_T>();
  file.hold(data, size);
  const int valid = is_valid_contact_file_csv(file.path());
  require(valid == 0 || valid == 1);
  import(file.path(), *cfg_get_contact_list(), true);
  import(file.path(), *other_list, false);
  read_community(file.path());
  export_again(exported.c_str());
  return 0;
}
