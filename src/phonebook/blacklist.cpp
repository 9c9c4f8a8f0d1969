// The operations on the blacklist. Its entries are not in the search index and have no position.
#include "phonebook/blacklist.h"

#include <cfgxml/binding.h>

#include "phonebook/summaries.h"
#include "phonebook/tables.h"
#include "support/lock.h"

namespace cfgxml::phonebook {
namespace {

CONTACT_SUMMARY_T* _cfg_get_black_summary() {
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return nullptr;
  return summarize(BlackSlots(list->Entries), Media::kWithout,
                   [](const CONTACT_DATA_T& /*entry*/) { return true; });
}

CONTACT_SUMMARY_T* _cfg_search_black_info(const char* text) {
  if (is_empty(text)) return _cfg_get_black_summary();
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return nullptr;
  return summarize(BlackSlots(list->Entries), Media::kWithout,
                   [&](const CONTACT_DATA_T& entry) { return mentions(entry, text); });
}

int _cfg_set_black_data(CONTACT_DATA_T* black_data) {
  if (black_data == nullptr) {
    rl_log_err("%s fail, black_data is NULL.", __func__);
    return -1;
  }
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return -1;
  const BlackSlots slots(list->Entries);
  if (is_name_in_contact(black_data->DisplayName, kNoId) == 1 ||
      has_name(slots, black_data->DisplayName, black_data->Id)) {
    rl_log_err("%s fail, contact name exists.", __func__);
    return 7;
  }
  CONTACT_DATA_T* slot = slots.find(black_data->Id);
  if (slot == nullptr) return 4;
  *slot = *black_data;
  black_save();
  return 0;
}

int _cfg_remove_black_all() {
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return -1;
  BlackSlots(list->Entries).clear();
  black_save();
  return 0;
}

}  // namespace

int _cfg_get_black_data(int id, CONTACT_DATA_T* black_data) {
  if (id < 1) {
    rl_log_err("%s failed: invalid id %d.", __func__, id);
    return -1;
  }
  if (black_data == nullptr) {
    rl_log_err("%s failed: black_data is NULL.", __func__);
    return -1;
  }
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return -1;
  const CONTACT_DATA_T* entry = BlackSlots(list->Entries).find(id);
  if (entry == nullptr) return -1;
  *black_data = *entry;
  return 0;
}

void insert_black(BLACK_DATA_LIST_T& list, CONTACT_DATA_T& entry) {
  const BlackSlots slots(list.Entries);
  entry.Id = slots.next_id();
  *slots.end() = entry;
  black_save();
}

int _cfg_add_black_data(CONTACT_DATA_T* black_data) {
  if (black_data == nullptr) {
    rl_log_err("%s failed: black_data is NULL.", __func__);
    return -1;
  }
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return -1;
  if (is_name_in_contact(black_data->DisplayName, kNoId) == 1) {
    rl_log_err("%s failed: the contact name already exists.", __func__);
    return 7;
  }
  const BlackSlots slots(list->Entries);
  if (has_name(slots, black_data->DisplayName, kNoId)) {
    rl_log_err("%s failed: the black name already exists.", __func__);
    return 7;
  }
  if (slots.full()) {
    rl_log_err("%s failed: there are already %d contact exist.", __func__,
               CFGXML_BLACKLIST_CAPACITY);
    return 18;
  }
  insert_black(*list, *black_data);
  return 0;
}

int _cfg_remove_black_data(int id) {
  if (id < 1) {
    rl_log_err("%s failed: invalid black id %d.", __func__, id);
    return -1;
  }
  BLACK_DATA_LIST_T* list = black_list(__func__);
  if (list == nullptr) return -1;
  const BlackSlots slots(list->Entries);
  CONTACT_DATA_T* entry = slots.find(id);
  if (entry == nullptr) return 0;
  slots.remove(entry);
  black_save();
  return 0;
}

}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

CONTACT_SUMMARY_T* cfg_get_black_summary(void) {
  return under_lock<CONTACT_SUMMARY_T*>(Lock::kPhonebook, nullptr, _cfg_get_black_summary);
}

CONTACT_SUMMARY_T* cfg_search_black_info(const char* text) {
  return under_lock<CONTACT_SUMMARY_T*>(Lock::kPhonebook, nullptr, _cfg_search_black_info, text);
}

int cfg_get_black_data(int id, CONTACT_DATA_T* black_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_get_black_data, id, black_data);
}

int cfg_add_black_data(CONTACT_DATA_T* black_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_add_black_data, black_data);
}

int cfg_set_black_data(CONTACT_DATA_T* black_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_set_black_data, black_data);
}

int cfg_remove_black_data(int id) {
  return under_lock(Lock::kPhonebook, -1, _cfg_remove_black_data, id);
}

int cfg_remove_black_all(void) { return under_lock(Lock::kPhonebook, -1, _cfg_remove_black_all); }
