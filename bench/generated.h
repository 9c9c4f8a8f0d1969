// People that do not exist, with names and numbers as an office's phonebooks have them.
#pragma once

#include <cfgxml/phonebook.h>

#include <cstddef>
#include <string>
#include <vector>

namespace generated {

struct Person {
  std::string name;
  std::string office;
  std::string mobile;  // empty for some, as is other
  std::string other;
};

/// The same people for the same arguments; their names differ from each other.
std::vector<Person> people(std::size_t count, unsigned seed);

/// The record that the phonebook would hold; Line, Group, Ring and Photo are as for a contact that
/// was entered on the phone.
CONTACT_DATA_T contact(const Person& person, int id);

/// What is typed on the keypad, 1 to 8 keys, to find one of the people by name or number.
std::vector<std::string> keys_for(const std::vector<Person>& people, std::size_t count,
                                  unsigned seed);

}  // namespace generated
