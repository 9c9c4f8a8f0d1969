// The elements and attributes of the phonebook's files, in the order in which they are written.
#pragma once

#include <cfgxml/phonebook.h>
#include <tinyxml2.h>

#include <cstddef>

#include "support/text.h"
#include "support/xml_file.h"

namespace cfgxml::phonebook {

/// An attribute and the field that holds it.
template <typename Record>
struct TextAttribute {
  const char* name;
  char (Record::*field)[64];
  bool is_read = true;
};

/// What an element holds besides its "Id"; only contacts and blacklist entries have a "Line".
template <typename Record, std::size_t Count>
struct ElementFormat {
  const char* name;
  TextAttribute<Record> texts[Count];
};

inline constexpr ElementFormat<GROUP_DATA_T, 3> kGroupElement = {
    "Group",
    {{"Name", &GROUP_DATA_T::Name},
     {"Ring", &GROUP_DATA_T::Ring},
     {"Description", &GROUP_DATA_T::Description}}};

/// A contact's group is the element that holds it.
inline constexpr ElementFormat<CONTACT_DATA_T, 6> kContactElement = {
    "Contact",
    {{"DisplayName", &CONTACT_DATA_T::DisplayName},
     {"OfficeNumber", &CONTACT_DATA_T::OfficeNumber},
     {"MobileNumber", &CONTACT_DATA_T::MobileNumber},
     {"OtherNumber", &CONTACT_DATA_T::OtherNumber},
     {"Ring", &CONTACT_DATA_T::Ring},
     {"Photo", &CONTACT_DATA_T::Photo}}};

/// An entry's group is written but not read back.
inline constexpr ElementFormat<CONTACT_DATA_T, 7> kBlacklistElement = {
    "Blacklist",
    {{"DisplayName", &CONTACT_DATA_T::DisplayName},
     {"OfficeNumber", &CONTACT_DATA_T::OfficeNumber},
     {"MobileNumber", &CONTACT_DATA_T::MobileNumber},
     {"OtherNumber", &CONTACT_DATA_T::OtherNumber},
     {"Group", &CONTACT_DATA_T::Group, false},
     {"Ring", &CONTACT_DATA_T::Ring},
     {"Photo", &CONTACT_DATA_T::Photo}}};

inline constexpr char kId[] = "Id";
inline constexpr char kLine[] = "Line";

inline void read_line(const tinyxml2::XMLElement& element, CONTACT_DATA_T& record) {
  record.Line = int_attribute(element, kLine);
}
inline void read_line(const tinyxml2::XMLElement& /*element*/, GROUP_DATA_T& /*record*/) {}

inline void write_line(tinyxml2::XMLElement& element, const CONTACT_DATA_T& record) {
  element.SetAttribute(kLine, record.Line);
}
inline void write_line(tinyxml2::XMLElement& /*element*/, const GROUP_DATA_T& /*record*/) {}

/// Fills a record whose other fields stay as they are; an absent attribute reads as 0 or empty.
template <typename Record, std::size_t Count>
void read_record(const ElementFormat<Record, Count>& format, const tinyxml2::XMLElement& element,
                 Record& record) {
  record.Id = int_attribute(element, kId);
  read_line(element, record);
  for (const TextAttribute<Record>& text : format.texts) {
    if (text.is_read) copy_text(record.*text.field, element.Attribute(text.name));
  }
}

/// Appends a record's element to a parent and returns it; nullptr when that fails, logged for the
/// worker.
template <typename Record, std::size_t Count>
tinyxml2::XMLElement* write_record(const ElementFormat<Record, Count>& format, const Record& record,
                                   tinyxml2::XMLElement* parent, const char* worker) {
  tinyxml2::XMLElement* element = append_element(parent, worker, format.name);
  if (element == nullptr) return nullptr;
  element->SetAttribute(kId, record.Id);
  write_line(*element, record);
  for (const TextAttribute<Record>& text : format.texts) {
    element->SetAttribute(text.name, record.*text.field);
  }
  return element;
}

}  // namespace cfgxml::phonebook
