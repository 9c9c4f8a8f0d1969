#include "phonebook/name_index.h"

#include <cfgxml/host.h>

#include <functional>

#include "phonebook/tables.h"

namespace cfgxml::phonebook {

NameIndex NameIndex::of_contacts() {
  const CONTACT_DATA_LIST_T* list = cfg_get_contact_list();
  return {list != nullptr ? list->Contacts : nullptr, CFGXML_CONTACT_CAPACITY, is_name_in_contact};
}

NameIndex NameIndex::of_blacklist() {
  const BLACK_DATA_LIST_T* list = cfg_get_black_list();
  return {list != nullptr ? list->Entries : nullptr, CFGXML_BLACKLIST_CAPACITY, is_name_in_black};
}

NameIndex::NameIndex(const CONTACT_DATA_T* table, std::size_t capacity, Check check)
    : table_(table), capacity_(capacity), check_(check) {
  for (std::size_t slot = 0; table != nullptr && slot < capacity && table[slot].Id >= 1; ++slot) {
    names_.insert(table[slot].DisplayName);
  }
}

bool NameIndex::contains(const char* name) const {
  if (is_empty(name)) return false;
  if (table_ == nullptr) return check_(name, kNoId) == 1;
  return names_.count(name) != 0;
}

void NameIndex::add(const CONTACT_DATA_T& record) {
  if (table_ == nullptr) return;
  const std::less<const CONTACT_DATA_T*> before;
  if (before(&record, table_) || !before(&record, table_ + capacity_)) return;
  names_.insert(record.DisplayName);
}

}  // namespace cfgxml::phonebook
