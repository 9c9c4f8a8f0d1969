#include "phonebook/name_index.h"

#include <cfgxml/host.h>

#include <functional>
#include <string_view>

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
    add(table[slot]);
  }
}

/// The place of the table's record with this name, or the free one where it belongs.
std::size_t NameIndex::place_of(const char* name) const {
  std::size_t place = std::hash<std::string_view>()(name) % kPlaces;
  while (places_[place] != 0 && !equal(table_[places_[place] - 1].DisplayName, name)) {
    place = (place + 1) % kPlaces;
  }
  return place;
}

bool NameIndex::contains(const char* name) const {
  if (is_empty(name) || equal(name, kNoName)) return false;
  if (table_ == nullptr) return check_(name, kNoId) == 1;
  return places_[place_of(name)] != 0;
}

void NameIndex::add(const CONTACT_DATA_T& record) {
  if (table_ == nullptr) return;
  const std::less<const CONTACT_DATA_T*> before;
  if (before(&record, table_) || !before(&record, table_ + capacity_)) return;
  std::uint16_t& place = places_[place_of(record.DisplayName)];
  if (place == 0) place = static_cast<std::uint16_t>(&record - table_ + 1);
}

}  // namespace cfgxml::phonebook
