// The operations on contacts: listing, reading, adding, changing and deleting, with the search
// index, the positions and the file kept in step.
#include "phonebook/contacts.h"

#include <cfgxml/binding.h>

#include <algorithm>
#include <bitset>

#include "phonebook/summaries.h"
#include "phonebook/tables.h"
#include "search/index.h"
#include "support/lock.h"

namespace cfgxml::phonebook {
namespace {

constexpr char kAllContacts[] = "All Contacts";

bool same_indexed_texts(const CONTACT_DATA_T& left, const CONTACT_DATA_T& right) {
  return equal(left.DisplayName, right.DisplayName) &&
         equal(left.OfficeNumber, right.OfficeNumber) &&
         equal(left.MobileNumber, right.MobileNumber) && equal(left.OtherNumber, right.OtherNumber);
}

/// An empty new name orders before every name; equal names place the new contact last.
bool orders_behind(const CONTACT_DATA_T& other, const CONTACT_DATA_T& contact) {
  return is_empty(contact.DisplayName) || rl_strcasecmp(other.DisplayName, contact.DisplayName) > 0;
}

/// A position is a caller's to write when it changes nothing that is indexed: the largest number
/// there is wraps around.
std::int32_t next_position(std::int32_t position) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(position) + 1);
}

/// Places a contact that stands in its slot among the others, which move up behind it.
void insert_position(const ContactSlots& slots, CONTACT_DATA_T& contact) {
  std::bitset<CFGXML_CONTACT_CAPACITY> behind;
  CONTACT_DATA_T* const end = slots.end();
  for (CONTACT_DATA_T* other = slots.begin(); other != end; ++other) {
    behind[static_cast<std::size_t>(other - slots.begin())] =
        other != &contact && orders_behind(*other, contact);
  }
  const auto others = static_cast<std::int32_t>(end - slots.begin()) - 1;

  const search::RecordWrites hold;
  contact.position = others - static_cast<std::int32_t>(behind.count());
  for (CONTACT_DATA_T* other = slots.begin(); other != end; ++other) {
    if (!behind[static_cast<std::size_t>(other - slots.begin())]) continue;
    other->position = next_position(other->position);
  }
}

/// Closes the gap that a contact at this position leaves.
void remove_position(const ContactSlots& slots, std::int32_t position) {
  CONTACT_DATA_T* const end = slots.end();
  const search::RecordWrites hold;
  for (CONTACT_DATA_T* other = slots.begin(); other != end; ++other) {
    if (other->position > position) --other->position;
  }
}

void write_record(CONTACT_DATA_T& slot, const CONTACT_DATA_T& contact) {
  const search::RecordWrites hold;
  slot = contact;
}

/// Writes a new contact into the first free slot.
CONTACT_DATA_T& put_contact(const ContactSlots& slots, const CONTACT_DATA_T& contact) {
  CONTACT_DATA_T& slot = *slots.end();
  CONTACT_DATA_T record = contact;
  record.Id = slots.next_id();
  write_record(slot, record);
  return slot;
}

/// What follows when a new contact is in the table.
void finish_contact(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T& slot) {
  insert_position(ContactSlots(list.Contacts), slot);
  sync_contacts(list);
  contact_save();
}

int out_of_memory(const char* worker) {
  rl_log_err("%s failed: out of memory.", worker);
  return -1;
}

CONTACT_SUMMARY_T* _cfg_get_contact_summary(const char* group_name) {
  if (group_name == nullptr) {
    rl_log_err("%s:group_name is NULL!", __func__);
    return nullptr;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return nullptr;
  const bool all = is_empty(group_name) || equal(group_name, kAllContacts);
  return summarize(ContactSlots(list->Contacts), Media::kWith, [&](const CONTACT_DATA_T& contact) {
    return all || equal(contact.Group, group_name);
  });
}

CONTACT_SUMMARY_T* _cfg_search_contact_summary(const char* text) {
  if (is_empty(text)) return _cfg_get_contact_summary("");
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return nullptr;
  return summarize(ContactSlots(list->Contacts), Media::kWithout,
                   [&](const CONTACT_DATA_T& contact) { return mentions(contact, text); });
}

int _cfg_mod_contact_data(CONTACT_DATA_T* contact_data) {
  if (contact_data == nullptr) {
    rl_log_err("%s fail, contact_data is NULL.", __func__);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const ContactSlots slots(list->Contacts);
  if (is_name_in_black(contact_data->DisplayName, kNoId) == 1 ||
      has_name(slots, contact_data->DisplayName, contact_data->Id)) {
    rl_log_err("%s fail, contact name exists.", __func__);
    return 7;
  }
  CONTACT_DATA_T* slot = slots.find(contact_data->Id);
  if (slot == nullptr) return 4;

  if (same_indexed_texts(*slot, *contact_data)) {
    write_record(*slot, *contact_data);
  } else {
    const std::int32_t position = slot->position;
    if (!search::replace_contact(*slot, *contact_data)) return out_of_memory(__func__);
    remove_position(slots, position);
    insert_position(slots, *slot);
  }
  contact_save();
  return 0;
}

int _cfg_del_all_contacts() {
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  clear_contacts(*list);
  contact_save();
  return 0;
}

/// Removes the contacts of a group in one pass; true when there was one.
bool remove_contacts_of(CONTACT_DATA_LIST_T& list, const char* group_name) {
  const ContactSlots slots(list.Contacts);
  CONTACT_DATA_T* const end = slots.end();
  std::bitset<CFGXML_CONTACT_CAPACITY> leaves;
  for (CONTACT_DATA_T* contact = slots.begin(); contact != end; ++contact) {
    leaves[static_cast<std::size_t>(contact - slots.begin())] = equal(contact->Group, group_name);
  }
  if (leaves.none()) return false;

  const search::RecordWrites hold;
  CONTACT_DATA_T* kept = slots.begin();
  for (CONTACT_DATA_T* contact = slots.begin(); contact != end; ++contact) {
    if (leaves[static_cast<std::size_t>(contact - slots.begin())]) continue;
    if (kept != contact) *kept = *contact;
    ++kept;
  }
  std::fill(std::copy(end, slots.limit(), kept), slots.limit(), CONTACT_DATA_T{});
  return true;
}

int _cfg_del_contacts_by_group(const char* group_name) {
  if (is_empty(group_name)) {
    rl_log_err("%s failed: group name empty.", __func__);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  if (remove_contacts_of(*list, group_name)) contact_save();
  return 0;
}

}  // namespace

int _cfg_get_contact_data(int id, CONTACT_DATA_T* contact_data) {
  if (id < 1) {
    rl_log_err("%s failed: invalid id %d.", __func__, id);
    return -1;
  }
  if (contact_data == nullptr) {
    rl_log_err("%s failed: contact_data is NULL.", __func__);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const CONTACT_DATA_T* contact = ContactSlots(list->Contacts).find(id);
  if (contact == nullptr) return -1;
  *contact_data = *contact;
  return 0;
}

void put_back_contact(CONTACT_DATA_LIST_T& list, const CONTACT_DATA_T& contact) {
  CONTACT_DATA_T& slot = put_contact(ContactSlots(list.Contacts), contact);
  search::add_record(CFGXML_BOOK_LOCAL, slot);
  finish_contact(list, slot);
}

int _cfg_add_contact_data(CONTACT_DATA_T* contact_data) {
  if (contact_data == nullptr) {
    rl_log_err("%s failed: contact_data is NULL.", __func__);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const ContactSlots slots(list->Contacts);
  if (is_name_in_black(contact_data->DisplayName, kNoId) == 1 ||
      has_name(slots, contact_data->DisplayName, kNoId)) {
    rl_log_err("%s failed: the contact name already exists.", __func__);
    return 7;
  }
  if (slots.full()) {
    rl_log_err("%s failed: there are already %d contact exist.", __func__, CFGXML_CONTACT_CAPACITY);
    return 17;
  }
  CONTACT_DATA_T& slot = put_contact(slots, *contact_data);
  if (!search::add_record(CFGXML_BOOK_LOCAL, slot)) {
    write_record(slot, {});
    return out_of_memory(__func__);
  }
  contact_data->Id = slot.Id;
  finish_contact(*list, slot);
  return 0;
}

int _cfg_del_contact_data(int id) {
  if (id < 1) {
    rl_log_err("%s failed: invalid contact id %d.", __func__, id);
    return -1;
  }
  CONTACT_DATA_LIST_T* list = contact_list(__func__);
  if (list == nullptr) return -1;
  const ContactSlots slots(list->Contacts);
  CONTACT_DATA_T* contact = slots.find(id);
  if (contact == nullptr) return 0;
  const std::int32_t position = contact->position;
  search::remove_contact(*list, contact);
  remove_position(slots, position);
  contact_save();
  return 0;
}

}  // namespace cfgxml::phonebook

using namespace cfgxml;             // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::phonebook;  // NOLINT(google-build-using-namespace): the boundary

CONTACT_SUMMARY_T* cfg_get_contact_summary(const char* group_name) {
  return under_lock<CONTACT_SUMMARY_T*>(Lock::kPhonebook, nullptr, _cfg_get_contact_summary,
                                        group_name);
}

CONTACT_SUMMARY_T* cfg_search_contact_summary(const char* text) {
  return under_lock<CONTACT_SUMMARY_T*>(Lock::kPhonebook, nullptr, _cfg_search_contact_summary,
                                        text);
}

int cfg_get_contact_data(int id, CONTACT_DATA_T* contact_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_get_contact_data, id, contact_data);
}

int cfg_add_contact_data(CONTACT_DATA_T* contact_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_add_contact_data, contact_data);
}

int cfg_mod_contact_data(CONTACT_DATA_T* contact_data) {
  return under_lock(Lock::kPhonebook, -1, _cfg_mod_contact_data, contact_data);
}

int cfg_del_contact_data(int id) {
  return under_lock(Lock::kPhonebook, -1, _cfg_del_contact_data, id);
}

int cfg_del_all_contacts(void) { return under_lock(Lock::kPhonebook, -1, _cfg_del_all_contacts); }

int cfg_del_contacts_by_group(const char* group_name) {
  return under_lock(Lock::kPhonebook, -1, _cfg_del_contacts_by_group, group_name);
}
