// The two look-ups that the plug-in hands through unchanged. What the words mean is this host's:
//
//   find_group_id(name): the id of the group with this name, 0 when there is none.
//
//   find_contacts_ring_url(number, buffer, capacity): the ring of the first contact that has this
//   number: the contact's own, else its group's, else "Auto"; copied to buffer, which is returned.
//   NULL when no contact has the number.
//
// Texts are NUL-terminated; words that are not named are not looked at.
#include <cfgxml/host.h>

#include <cstdint>
#include <string_view>

#include "host.h"
#include "runtime/locks.h"

namespace host {
namespace {

constexpr std::string_view kNoRing = "Auto";

const GROUP_DATA_T* find_group(const CONTACT_DATA_LIST_T& list, std::string_view name) {
  for (const GROUP_DATA_T& group : list.Groups) {
    if (group.Id < 1) break;
    if (name == group.Name) return &group;
  }
  return nullptr;
}

const CONTACT_DATA_T* find_number(const CONTACT_DATA_LIST_T& list, std::string_view number) {
  for (const CONTACT_DATA_T& contact : list.Contacts) {
    if (contact.Id < 1) break;
    if (number == contact.OfficeNumber || number == contact.MobileNumber ||
        number == contact.OtherNumber) {
      return &contact;
    }
  }
  return nullptr;
}

bool names_ring(std::string_view ring) { return !ring.empty() && ring != kNoRing; }

const char* ring_of(const CONTACT_DATA_LIST_T& list, const CONTACT_DATA_T& contact) {
  if (names_ring(contact.Ring)) return contact.Ring;
  const GROUP_DATA_T* group = find_group(list, contact.Group);
  return group != nullptr && names_ring(group->Ring) ? group->Ring : kNoRing.data();
}

}  // namespace
}  // namespace host

void* adapter_find_group_id(void* first, void* /*second*/, void* /*third*/, void* /*fourth*/) {
  const host::PhonebookLock hold;
  const CONTACT_DATA_LIST_T* list = cfg_get_contact_list();
  if (list == nullptr || first == nullptr) return nullptr;
  const GROUP_DATA_T* group = host::find_group(*list, static_cast<const char*>(first));
  const std::intptr_t id = group != nullptr ? group->Id : 0;
  return reinterpret_cast<void*>(id);  // NOLINT(performance-no-int-to-ptr): the word is the result
}

void* adapter_find_contacts_ring_url(void* first, void* second, void* third, void* /*fourth*/) {
  const auto capacity = reinterpret_cast<std::uintptr_t>(third);
  const host::PhonebookLock hold;
  const CONTACT_DATA_LIST_T* list = cfg_get_contact_list();
  if (list == nullptr || first == nullptr || second == nullptr || capacity == 0) return nullptr;
  const auto* number = static_cast<const char*>(first);
  const CONTACT_DATA_T* contact = *number != '\0' ? host::find_number(*list, number) : nullptr;
  if (contact == nullptr) return nullptr;
  rl_strcpy_s(static_cast<char*>(second), capacity, host::ring_of(*list, *contact));
  return second;
}
