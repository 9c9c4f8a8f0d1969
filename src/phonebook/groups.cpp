// The operations on groups, and the clean-up after a ring or photo file has been deleted.
#include <cfgxml/binding.h>
#include <cfgxml/phonebook.h>

#include "phonebook/tables.h"
#include "support/chain.h"
#include "support/lock.h"

namespace cfgxml::phonebook {
namespace {

GROUP_SUMMARY_T* _cfg_get_group_summary() {
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return nullptr;
  Chain<GROUP_SUMMARY_T> chain;
  for (const GROUP_DATA_T& group : GroupSlots(list->Groups)) {
    if (equal(group.Name, kDefaultGroup)) continue;
    GROUP_SUMMARY_T* node = chain.append();
    if (node == nullptr) break;
    node->Id = group.Id;
    copy_text(node->Name, group.Name);
    copy_text(node->Ring, group.Ring);
    copy_text(node->Description, group.Description);
  }
  return chain.release();
}

int _cfg_destory_group_summary(GROUP_SUMMARY_T* group_header) {
  if (group_header == nullptr) {
    rl_log_err("%s failed: group_header is NULL.", __func__);
    return -1;
  }
  free_chain(group_header);
  return 0;
}

int _cfg_get_group_data(GROUP_DATA_T* group_data) {
  if (group_data == nullptr) {
    rl_log_err("%s:fail, group_data is NULL.", __func__);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const GROUP_DATA_T* group = group_data->Id < 1 ? find_group(*list, group_data->Name)
                                                 : GroupSlots(list->Groups).find(group_data->Id);
  if (group == nullptr) return -1;
  *group_data = *group;
  return 0;
}

int _cfg_add_group_data(GROUP_DATA_T* group_data) {
  if (group_data == nullptr) {
    rl_log_err("%s failed: group_data is NULL.", __func__);
    return -1;
  }
  if (is_empty(group_data->Name)) {
    rl_log_err("%s failed: group name is empty.", __func__);
    return 14;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  if (find_group(*list, group_data->Name) != nullptr) {
    rl_log_err("%s failed: the group name already exists.", __func__);
    return 7;
  }
  const GroupSlots slots(list->Groups);
  if (slots.full()) {
    rl_log_err("%s failed: there are already %d groups exist.", __func__, CFGXML_GROUP_CAPACITY);
    return 16;
  }
  group_data->Id = slots.next_id();
  *slots.end() = *group_data;
  contact_save();
  return 0;
}

int _cfg_mod_group_data(GROUP_DATA_T* group_data) {
  if (group_data == nullptr) {
    rl_log_err("%s failed, group_data is NULL.", __func__);
    return -1;
  }
  if (group_data->Id < 1) {
    rl_log_err("%s failed, invalid group id %d.", __func__, group_data->Id);
    return -1;
  }
  if (equal(group_data->Name, kDefaultGroup)) {
    rl_log_err("%s failed, group name is Default.", __func__);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const GroupSlots slots(list->Groups);
  if (has_name(slots, group_data->Name, group_data->Id)) return 7;
  GROUP_DATA_T* slot = slots.find(group_data->Id);
  if (slot == nullptr) return 4;
  if (equal(slot->Name, kDefaultGroup) &&
      slots.full()) {  // a load would need a seventh slot for it
    rl_log_err("%s failed: there are already %d groups exist.", __func__, CFGXML_GROUP_CAPACITY);
    return 16;
  }
  *slot = *group_data;
  contact_save();
  return 0;
}

int _cfg_del_group_data(int id) {
  if (id < 1) {
    rl_log_err("%s failed: invalid group id %d.", __func__, id);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const GroupSlots slots(list->Groups);
  GROUP_DATA_T* group = slots.find(id);
  if (group == nullptr) return 0;
  if (equal(group->Name, kDefaultGroup)) {
    rl_log_err("group_name can't be Default.");
    return -1;
  }
  slots.remove(group);
  sync_contacts(*list);
  contact_save();
  return 0;
}

int _cfg_del_all_group_data() {
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  if (const GROUP_DATA_T* found = find_group(*list, kDefaultGroup)) {
    const GROUP_DATA_T kept = *found;
    GroupSlots(list->Groups).clear();
    list->Groups[0] = kept;
  }
  sync_contacts(*list);
  contact_save();
  return 0;
}

/// Gives every slot of a table, used or not, whose field has the old text the new one; true when
/// there was one.
template <typename Record, std::size_t Capacity, std::size_t Size>
bool replace_text(Record (&table)[Capacity], char (Record::*field)[Size], const char* old_text,
                  const char* new_text) {
  bool changed = false;
  for (Record& record : table) {
    if (!equal(record.*field, old_text)) continue;
    copy_text(record.*field, new_text);
    changed = true;
  }
  return changed;
}

int _cfg_del_contact_ring_info(const char* ring) {
  if (ring == nullptr) {
    rl_log_err("cfg_del_contact_ring_info failed!");
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const bool groups = replace_text(list->Groups, &GROUP_DATA_T::Ring, ring, kDefaultRing);
  const bool contacts = replace_text(list->Contacts, &CONTACT_DATA_T::Ring, ring, kDefaultRing);
  if (groups || contacts) contact_save();
  return 0;
}

int _cfg_del_contact_photo_info(const char* photo) {
  if (photo == nullptr) {
    rl_log_err("cfg_del_contact_photo_info failed!");
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  if (replace_text(list->Contacts, &CONTACT_DATA_T::Photo, photo, kDefaultPhoto)) contact_save();
  return 0;
}

}  // namespace
}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

GROUP_SUMMARY_T* cfg_get_group_summary(void) {
  return under_lock<GROUP_SUMMARY_T*>(Lock::kPhonebook, nullptr, _cfg_get_group_summary);
}

int cfg_destory_group_summary(GROUP_SUMMARY_T* group_header) {
  return under_lock(Lock::kPhonebook, -1, _cfg_destory_group_summary, group_header);
}

int cfg_get_group_data(GROUP_DATA_T* group_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_get_group_data, group_data);
}

int cfg_add_group_data(GROUP_DATA_T* group_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_add_group_data, group_data);
}

int cfg_mod_group_data(GROUP_DATA_T* group_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_mod_group_data, group_data);
}

int cfg_del_group_data(int id) { return under_lock(Lock::kPhonebook, -1, _cfg_del_group_data, id); }

int cfg_del_all_group_data(void) {
  return under_lock(Lock::kPhonebook, -1, _cfg_del_all_group_data);
}

int cfg_del_contact_ring_info(const char* ring) {
  return under_lock(Lock::kPhonebook, -1, _cfg_del_contact_ring_info, ring);
}

int cfg_del_contact_photo_info(const char* photo) {
  return under_lock(Lock::kPhonebook, -1, _cfg_del_contact_photo_info, photo);
}
