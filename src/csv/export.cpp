// Exporting contacts as a CSV file.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

#include <string>

#include "csv/columns.h"
#include "support/durable.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/text.h"

namespace cfgxml::csv {
namespace {

/// The first of the host's groups that has the name, free slots included; an empty one for none.
const GROUP_DATA_T& group_of(const char* name) {
  static constexpr GROUP_DATA_T kNone = {};
  const CONTACT_DATA_LIST_T* list = cfg_get_contact_list();
  if (list == nullptr) return kNone;
  for (const GROUP_DATA_T& group : list->Groups) {
    if (equal(group.Name, name)) return group;
  }
  return kNone;
}

void append_value(std::string& line, Value value, const CONTACT_SUMMARY_T& contact,
                  const GROUP_DATA_T& group) {
  switch (value) {
    case Value::kNothing:
      break;
    case Value::kName:
      line += contact.DisplayName;
      break;
    case Value::kOffice:
      line += contact.OfficeNumber;
      break;
    case Value::kMobile:
      line += contact.MobileNumber;
      break;
    case Value::kOther:
      line += contact.OtherNumber;
      break;
    case Value::kRing:
      line += contact.Ring;
      break;
    case Value::kGroup:
      line += contact.Group;
      break;
    case Value::kGroupRing:
      line += group.Ring;
      break;
    case Value::kGroupDescription:
      line += group.Description;
      break;
    case Value::kPhoto:
      line += contact.Photo;
      break;
    case Value::kLine:
      line += std::to_string(contact.Line);
      break;
    case Value::kEnd:
      line += kEndOfRow;
      break;
  }
}

void append_header(std::string& text) {
  for (const Column& column : kColumns) {
    if (&column != kColumns) text += ',';
    text += column.name;
  }
  text += '\n';
}

void append_row(std::string& text, const CONTACT_SUMMARY_T& contact) {
  const GROUP_DATA_T& group = group_of(contact.Group);
  for (const Column& column : kColumns) {
    if (&column != kColumns) text += ',';
    append_value(text, column.exported, contact, group);
  }
  text += '\n';
}

int export_contacts(const char* path, const CONTACT_SUMMARY_T* summary, const char* function) {
  if (path == nullptr) {
    rl_log_err("%s: Bad parameters", function);
    return -1;
  }
  std::string text;
  append_header(text);
  for (const CONTACT_SUMMARY_T* contact = summary; contact != nullptr; contact = contact->next) {
    append_row(text, *contact);
  }
  return durable::replace_or_write_in_place(paths::on_disk(path), text, 0666) ? 0 : -1;
}

}  // namespace
}  // namespace cfgxml::csv

int save_contact_csv(const char* path, CONTACT_SUMMARY_T* summary) {
  return cfgxml::guarded(-1, cfgxml::csv::export_contacts, path, summary, __func__);
}
