#include "record_options.h"

#include "text.h"

namespace deskphone {
namespace {

template <std::size_t Capacity>
void put(char (&field)[Capacity], const char* argument, const std::optional<std::string>& text) {
  if (text) set_text(field, argument, *text);
}

}  // namespace

bool RecordFields::empty() const {
  return !name && !office && !mobile && !other && !group && !ring && !photo && !line;
}

void RecordFields::put_into(CONTACT_DATA_T& record) const {
  put(record.DisplayName, "The name", name);
  put(record.OfficeNumber, "--office", office);
  put(record.MobileNumber, "--mobile", mobile);
  put(record.OtherNumber, "--other", other);
  put(record.Group, "--group", group);
  put(record.Ring, "--ring", ring);
  put(record.Photo, "--photo", photo);
  if (line) record.Line = *line;
}

void add_number_options(Command command, RecordFields& fields) {
  command.add_option("--office", fields.office, "The office number");
  command.add_option("--mobile", fields.mobile, "The mobile number");
  command.add_option("--other", fields.other, "A further number");
  command.add_option("--line", fields.line, "The line to call from; 0 for every line").at_least(0);
}

void add_contact_options(Command command, RecordFields& fields) {
  command.add_option("--group", fields.group, "The name of the group");
  command.add_option("--ring", fields.ring, "The ring tone; Auto for the group's");
  command.add_option("--photo", fields.photo, "The photo; Default for none");
}

}  // namespace deskphone
