// Record layouts, the host's lists, the name checks and the releases.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <cstddef>
#include <cstring>

#include "phonebook/summaries.h"
#include "phonebook/tables.h"
#include "search/index.h"
#include "support/chain.h"
#include "support/lock.h"

// The records are shared with the host: every field follows the one before without a gap, and only
// the pointers differ between 32-bit and 64-bit.
static_assert(sizeof(GROUP_DATA_T) == 196);
static_assert(offsetof(GROUP_DATA_T, Id) == 0);
static_assert(offsetof(GROUP_DATA_T, Name) == 4);
static_assert(offsetof(GROUP_DATA_T, Ring) == 68);
static_assert(offsetof(GROUP_DATA_T, Description) == 132);

static_assert(sizeof(CONTACT_DATA_T) == 460);
static_assert(offsetof(CONTACT_DATA_T, position) == 0);
static_assert(offsetof(CONTACT_DATA_T, Id) == 4);
static_assert(offsetof(CONTACT_DATA_T, Line) == 8);
static_assert(offsetof(CONTACT_DATA_T, DisplayName) == 12);
static_assert(offsetof(CONTACT_DATA_T, OfficeNumber) == 76);
static_assert(offsetof(CONTACT_DATA_T, MobileNumber) == 140);
static_assert(offsetof(CONTACT_DATA_T, OtherNumber) == 204);
static_assert(offsetof(CONTACT_DATA_T, Group) == 268);
static_assert(offsetof(CONTACT_DATA_T, Ring) == 332);
static_assert(offsetof(CONTACT_DATA_T, Photo) == 396);

static_assert(sizeof(CONTACT_DATA_LIST_T) == 6 * 196 + 500 * 460);
static_assert(offsetof(CONTACT_DATA_LIST_T, Contacts) == 6 * 196);
static_assert(sizeof(BLACK_DATA_LIST_T) == 100 * 460);

static_assert(offsetof(CONTACT_SUMMARY_T, position) == 0);
static_assert(offsetof(CONTACT_SUMMARY_T, Id) == 4);
static_assert(offsetof(CONTACT_SUMMARY_T, Line) == 8);
static_assert(offsetof(CONTACT_SUMMARY_T, DisplayName) == 12);
static_assert(offsetof(CONTACT_SUMMARY_T, OfficeNumber) == 76);
static_assert(offsetof(CONTACT_SUMMARY_T, MobileNumber) == 108);
static_assert(offsetof(CONTACT_SUMMARY_T, OtherNumber) == 140);
static_assert(offsetof(CONTACT_SUMMARY_T, Group) == 172);
static_assert(offsetof(CONTACT_SUMMARY_T, Ring) == 236);
static_assert(offsetof(CONTACT_SUMMARY_T, Photo) == 300);
static_assert(offsetof(CONTACT_SUMMARY_T, next) == (sizeof(void*) == 8 ? 368 : 364));
static_assert(sizeof(CONTACT_SUMMARY_T) == (sizeof(void*) == 8 ? 376 : 368));

static_assert(offsetof(GROUP_SUMMARY_T, Id) == 0);
static_assert(offsetof(GROUP_SUMMARY_T, Name) == 4);
static_assert(offsetof(GROUP_SUMMARY_T, Ring) == 68);
static_assert(offsetof(GROUP_SUMMARY_T, Description) == 132);
static_assert(offsetof(GROUP_SUMMARY_T, next) == (sizeof(void*) == 8 ? 200 : 196));
static_assert(sizeof(GROUP_SUMMARY_T) == (sizeof(void*) == 8 ? 208 : 200));

static_assert(offsetof(COMMUNITY_CONTACT_T, next) == (sizeof(void*) == 8 ? 464 : 460));
static_assert(offsetof(COMMUNITY_DATA_T, Groups) == 2 * sizeof(void*));
static_assert(offsetof(COMMUNITY_DATA_T, Contacts) == 3 * sizeof(void*));
static_assert(sizeof(COMMUNITY_DATA_T) == 4 * sizeof(void*));

namespace cfgxml::phonebook {

CONTACT_DATA_LIST_T* contact_list(const char* worker) {
  CONTACT_DATA_LIST_T* list = cfg_get_contact_list();
  if (list == nullptr) rl_log_err("%s failed: cfg_get_contact_list return NULL.", worker);
  return list;
}

BLACK_DATA_LIST_T* black_list(const char* worker) {
  BLACK_DATA_LIST_T* list = cfg_get_black_list();
  if (list == nullptr) rl_log_err("%s failed: cfg_get_black_list return NULL.", worker);
  return list;
}

GROUP_DATA_T* find_group(CONTACT_DATA_LIST_T& list, const char* name) {
  for (GROUP_DATA_T& group : GroupSlots(list.Groups)) {
    if (equal(group.Name, name)) return &group;
  }
  return nullptr;
}

void clear_contacts(CONTACT_DATA_LIST_T& list) {
  const search::RecordWrites hold;
  std::memset(list.Contacts, 0, sizeof list.Contacts);
}

void sync_contacts(CONTACT_DATA_LIST_T& list) {
  for (CONTACT_DATA_T& contact : ContactSlots(list.Contacts)) {
    if (is_empty(contact.DisplayName)) copy_text(contact.DisplayName, kNoName);
    if (find_group(list, contact.Group) == nullptr) copy_text(contact.Group, kDefaultGroup);
  }
}

void fill_summary(CONTACT_SUMMARY_T& node, const CONTACT_DATA_T& record, Media media) {
  node.Id = record.Id;
  node.Line = record.Line;
  copy_text(node.DisplayName, record.DisplayName);
  copy_text(node.OfficeNumber, record.OfficeNumber);
  copy_text(node.MobileNumber, record.MobileNumber);
  copy_text(node.OtherNumber, record.OtherNumber);
  copy_text(node.Group, record.Group);
  if (media == Media::kWithout) return;
  copy_text(node.Ring, record.Ring);
  copy_text(node.Photo, record.Photo);
}

}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

int is_name_in_group(const char* name, int id) {
  if (is_empty(name)) return 0;
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  return list != nullptr && has_name(GroupSlots(list->Groups), name, id) ? 1 : 0;
}

int is_name_in_contact(const char* name, int id) {
  if (is_empty(name)) return 0;
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  return list != nullptr && has_name(ContactSlots(list->Contacts), name, id) ? 1 : 0;
}

int is_name_in_black(const char* name, int id) {
  if (is_empty(name)) return 0;
  BLACK_DATA_LIST_T* list = black_list(__func__);
  return list != nullptr && has_name(BlackSlots(list->Entries), name, id) ? 1 : 0;
}

int cfg_destory_contact_summary(CONTACT_SUMMARY_T* contact_header) {
  if (contact_header == nullptr) {
    rl_log_info("%s failed: contact_header is NULL.", __func__);
    return -1;
  }
  free_chain(contact_header);
  return 0;
}

int contact_data_sync(void) {
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  sync_contacts(*list);
  return 0;
}
