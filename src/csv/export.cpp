// Exporting contacts as a CSV file.
#include <cfgxml/csv.h>
#include <cfgxml/host.h>

#include <string>
#include <utility>

#include "csv/rows.h"
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

void make_header(std::string& line) {
  for (const Column& column : kColumns) {
    if (&column != kColumns) line += ',';
    line += column.name;
  }
  line += '\n';
}

void make_row(std::string& line, const CONTACT_SUMMARY_T& contact) {
  line.clear();
  const GROUP_DATA_T& group = group_of(contact.Group);
  for (const Column& column : kColumns) {
    if (&column != kColumns) line += ',';
    append_value(line, column.exported, contact, group);
  }
  line += '\n';
}

bool write(std::FILE* file, const std::string& line) {
  return std::fwrite(line.data(), 1, line.size(), file) == line.size();
}

bool write_file(File file, std::string& line, const CONTACT_SUMMARY_T* contact) {
  make_header(line);
  bool written = write(file.get(), line);
  for (; written && contact != nullptr; contact = contact->next) {
    make_row(line, *contact);
    written = write(file.get(), line);
  }
  const bool closed = std::fclose(file.release()) == 0;
  return written && closed;
}

int export_contacts(const char* path, const CONTACT_SUMMARY_T* summary, const char* function) {
  if (path == nullptr) {
    rl_log_err("%s: Bad parameters", function);
    return -1;
  }
  std::string line;
  line.reserve(kLineCapacity);  // before the old file is gone: nothing else allocates
  File file = open_to_replace(paths::on_disk(path));
  if (file == nullptr) return -1;
  if (write_file(std::move(file), line, summary)) return 0;
  rl_log_err("%s failed: file <%s> can not be written.", function, path);
  return -1;
}

}  // namespace
}  // namespace cfgxml::csv

int save_contact_csv(const char* path, CONTACT_SUMMARY_T* summary) {
  return cfgxml::guarded(-1, cfgxml::csv::export_contacts, path, summary, __func__);
}
