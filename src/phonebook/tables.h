// The phonebook's view of the host's blocks: typed tables, and the lookups that log a missing one.
#pragma once

#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include "support/slots.h"
#include "support/text.h"

namespace cfgxml::phonebook {

using GroupSlots = Slots<GROUP_DATA_T, CFGXML_GROUP_CAPACITY, &GROUP_DATA_T::Id>;
using ContactSlots = Slots<CONTACT_DATA_T, CFGXML_CONTACT_CAPACITY, &CONTACT_DATA_T::Id>;
using BlackSlots = Slots<CONTACT_DATA_T, CFGXML_BLACKLIST_CAPACITY, &CONTACT_DATA_T::Id>;

inline constexpr char kDefaultGroup[] = "Default";
inline constexpr char kDefaultRing[] = "Auto";
inline constexpr char kDefaultPhoto[] = "Default";
inline constexpr char kNoName[] = "(Empty)";

/// The host's list, or nullptr, which is logged for the worker.
CONTACT_DATA_LIST_T* contact_list(const char* worker);
BLACK_DATA_LIST_T* black_list(const char* worker);

inline const char* name_of(const GROUP_DATA_T& group) { return group.Name; }
inline const char* name_of(const CONTACT_DATA_T& contact) { return contact.DisplayName; }

/// True when a record other than the one with this id has the name.
template <typename Slots>
bool has_name(const Slots& slots, const char* name, std::int32_t except_id) {
  for (const auto& record : slots) {
    if (record.Id != except_id && equal(name_of(record), name)) return true;
  }
  return false;
}

/// No record has this id.
inline constexpr std::int32_t kNoId = -1;

/// True when the record's name or one of its numbers contains the text; for contacts and summaries.
template <typename Record>
bool mentions(const Record& record, const char* text) {
  return contains(record.DisplayName, text) || contains(record.OfficeNumber, text) ||
         contains(record.MobileNumber, text) || contains(record.OtherNumber, text);
}

/// The group of this name, or nullptr.
GROUP_DATA_T* find_group(CONTACT_DATA_LIST_T& list, const char* name);

/// Clears every contact slot.
void clear_contacts(CONTACT_DATA_LIST_T& list);

/// Names contacts without a name, and moves those of no existing group to "Default".
void sync_contacts(CONTACT_DATA_LIST_T& list);

}  // namespace cfgxml::phonebook
