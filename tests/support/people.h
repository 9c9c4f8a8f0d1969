// Contacts and groups, made in a line and shown in one.
#pragma once

#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <string>

#include "support/records.h"

namespace phone_test {

template <std::size_t Capacity>
void put(char (&field)[Capacity], const std::string& text) {
  rl_strcpy_s(field, Capacity, text.c_str());
}

inline CONTACT_DATA_T contact(const std::string& name, const std::string& office = "",
                              const std::string& group = "Default", int id = 0) {
  CONTACT_DATA_T record{};
  record.Id = id;
  put(record.DisplayName, name);
  put(record.OfficeNumber, office);
  put(record.Group, group);
  return record;
}

inline GROUP_DATA_T group(const std::string& name, int id = 0) {
  GROUP_DATA_T record{};
  record.Id = id;
  put(record.Name, name);
  return record;
}

template <typename Record>
int with(int (*change)(Record*), Record record) {
  return change(&record);
}

template <typename Group>
auto name_of(const Group& group) -> decltype(&group.Name[0]) {
  return group.Name;
}
template <typename Contact>
auto name_of(const Contact& contact) -> decltype(&contact.DisplayName[0]) {
  return contact.DisplayName;
}

/// Records as "1:Ann 2:Bert".
template <typename Records>
std::string shown(const Records& records) {
  std::string text;
  for (const auto& record : records) {
    text += (text.empty() ? "" : " ") + std::to_string(record.Id) + ":" + name_of(record);
  }
  return text;
}
template <typename Record, std::size_t Capacity>
std::string shown(const Record (&table)[Capacity]) {
  return shown(Used(table));
}

}  // namespace phone_test
