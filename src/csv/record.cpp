#include "csv/record.h"

#include "phonebook/tables.h"

namespace cfgxml::csv {

void store(CONTACT_DATA_T& contact, Value value, const char* text) {
  switch (value) {
    case Value::kName:
      return copy_text(contact.DisplayName, text);
    case Value::kOffice:
      return copy_text(contact.OfficeNumber, text);
    case Value::kMobile:
      return copy_text(contact.MobileNumber, text);
    case Value::kOther:
      return copy_text(contact.OtherNumber, text);
    case Value::kRing:
      return copy_text(contact.Ring, text);
    case Value::kPhoto:
      return copy_text(contact.Photo, text);
    case Value::kLine:
      contact.Line = rl_atoi(text);
      return;
    default:
      return;
  }
}

const char* group_or_default(const char* text) {
  return is_empty(text) ? phonebook::kDefaultGroup : text;
}

const char* ring_or_default(const char* text) {
  return is_empty(text) ? phonebook::kDefaultRing : text;
}

}  // namespace cfgxml::csv
