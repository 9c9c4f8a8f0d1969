// The name checks of a file being loaded, without a walk through the tables for every name.
#pragma once

#include <cfgxml/phonebook.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace cfgxml::phonebook {

/// Answers is_name_in_contact(name, -1) or is_name_in_black(name, -1) for a table that only grows,
/// through add(). "(Empty)" is never taken: nameless contacts are all called that, and all come
/// back from their file. The index refers to the names where they stand in the table, and allocates
/// nothing: a list that is being read can't end half-way for want of memory.
class NameIndex {
 public:
  /// The names that the host's contact list or blacklist holds now. A list that the host does not
  /// have is asked for again, and its absence logged, at every check.
  static NameIndex of_contacts();
  static NameIndex of_blacklist();

  bool contains(const char* name) const;

  /// Notes a record that was stored. One that stands outside the host's table, in a list of the
  /// caller's, does not count.
  void add(const CONTACT_DATA_T& record);

 private:
  using Check = int (*)(const char* name, int id);

  static constexpr std::size_t kPlaces = 1024;
  static_assert(kPlaces > CFGXML_CONTACT_CAPACITY && kPlaces > CFGXML_BLACKLIST_CAPACITY);

  NameIndex(const CONTACT_DATA_T* table, std::size_t capacity, Check check);

  std::size_t place_of(const char* name) const;

  const CONTACT_DATA_T* table_;
  std::size_t capacity_;
  Check check_;
  std::array<std::uint16_t, kPlaces> places_ = {};  // by the name's hash: a slot plus 1, 0 for none
};

}  // namespace cfgxml::phonebook
