// The name that the user has stored for a number: one scan over contacts and blacklist.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/remote.h>

#include <cstddef>
#include <new>

#include "support/lock.h"
#include "support/text.h"

namespace cfgxml::remote {
namespace {

bool has_number(const CONTACT_DATA_T& entry, const char* number) {
  return equal(number, entry.OfficeNumber) || equal(number, entry.MobileNumber) ||
         equal(number, entry.OtherNumber);
}

/// The first entry for this number and line, or nullptr. Every slot is looked at: a free one does
/// not end the scan.
template <std::size_t Capacity>
const CONTACT_DATA_T* find_entry(const CONTACT_DATA_T (&entries)[Capacity], const char* number,
                                 int line) {
  for (const CONTACT_DATA_T& entry : entries) {
    if (entry.Id < 1) continue;
    const bool on_line = line == 0 || entry.Line == 0 || entry.Line == line;
    if (on_line && has_number(entry, number)) return &entry;
  }
  return nullptr;
}

/// A copy of the entry's name for the caller to delete[], unless it is the name shown already.
char* name_to_show(const CONTACT_DATA_T& entry, const char* shown_name) {
  if (equal(shown_name, entry.DisplayName)) return nullptr;
  const std::size_t size = rl_strlen(entry.DisplayName) + 1;
  char* name = new (std::nothrow) char[size];
  if (name != nullptr) rl_memcpy(name, entry.DisplayName, size);
  return name;
}

char* _cfg_get_contact_name(const char* number, const char* shown_name, int line) {
  if (number == nullptr || shown_name == nullptr) return nullptr;
  const CONTACT_DATA_LIST_T* contacts = cfg_get_contact_list();
  if (contacts == nullptr) {
    rl_log_err("%s failed: cfg_get_contact_list return NULL.", __func__);
    return nullptr;
  }
  if (const CONTACT_DATA_T* contact = find_entry(contacts->Contacts, number, line)) {
    return name_to_show(*contact, shown_name);
  }
  const BLACK_DATA_LIST_T* blacklist = cfg_get_black_list();
  if (blacklist == nullptr) {
    rl_log_err("%s failed: cfg_get_black_list return NULL.", __func__);
    return nullptr;
  }
  const CONTACT_DATA_T* entry = find_entry(blacklist->Entries, number, line);
  return entry != nullptr ? name_to_show(*entry, shown_name) : nullptr;
}

}  // namespace
}  // namespace cfgxml::remote

char* cfg_get_contact_name(const char* number, const char* shown_name, int line) {
  return cfgxml::under_lock<char*>(cfgxml::Lock::kPhonebook, nullptr,
                                   cfgxml::remote::_cfg_get_contact_name, number, shown_name, line);
}
