// The elements and attributes of the phonebook's files, in the order in which they are written, and
// the order of their saves.
#pragma once

#include <cfgxml/phonebook.h>
#include <tinyxml2.h>

#include "support/fields.h"
#include "support/xml_file.h"

namespace cfgxml::phonebook {

/// Order the snapshots of the lists that are saved, and the uploads.
extern SaveOrder contact_saves;
extern SaveOrder blacklist_saves;

inline constexpr char kId[] = "Id";
inline constexpr char kGroupElement[] = "Group";
inline constexpr char kContactElement[] = "Contact";
inline constexpr char kBlacklistElement[] = "Blacklist";

inline constexpr Field<GROUP_DATA_T> kGroupFields[] = {
    field<&GROUP_DATA_T::Id>(kId),
    field<&GROUP_DATA_T::Name>("Name"),
    field<&GROUP_DATA_T::Ring>("Ring"),
    field<&GROUP_DATA_T::Description>("Description"),
};

/// A contact's group is the element that holds it.
inline constexpr Field<CONTACT_DATA_T> kContactFields[] = {
    field<&CONTACT_DATA_T::Id>(kId),
    field<&CONTACT_DATA_T::Line>("Line"),
    field<&CONTACT_DATA_T::DisplayName>("DisplayName"),
    field<&CONTACT_DATA_T::OfficeNumber>("OfficeNumber"),
    field<&CONTACT_DATA_T::MobileNumber>("MobileNumber"),
    field<&CONTACT_DATA_T::OtherNumber>("OtherNumber"),
    field<&CONTACT_DATA_T::Ring>("Ring"),
    field<&CONTACT_DATA_T::Photo>("Photo"),
};

inline constexpr Field<CONTACT_DATA_T> kBlacklistFields[] = {
    field<&CONTACT_DATA_T::Id>(kId),
    field<&CONTACT_DATA_T::Line>("Line"),
    field<&CONTACT_DATA_T::DisplayName>("DisplayName"),
    field<&CONTACT_DATA_T::OfficeNumber>("OfficeNumber"),
    field<&CONTACT_DATA_T::MobileNumber>("MobileNumber"),
    field<&CONTACT_DATA_T::OtherNumber>("OtherNumber"),
    field<&CONTACT_DATA_T::Group>("Group"),
    field<&CONTACT_DATA_T::Ring>("Ring"),
    field<&CONTACT_DATA_T::Photo>("Photo"),
};

/// Appends a record's element to a parent and returns it; nullptr when that fails, logged for the
/// worker.
template <typename Record>
tinyxml2::XMLElement* append_record(tinyxml2::XMLElement* parent, const char* name,
                                    Fields<Record> fields, const Record& record,
                                    const char* worker) {
  tinyxml2::XMLElement* element = append_element(parent, worker, name);
  if (element != nullptr) fields.write(*element, record);
  return element;
}

}  // namespace cfgxml::phonebook
