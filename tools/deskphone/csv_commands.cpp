// deskphone contacts: import, export, check, community.
#include <cfgxml/host.h>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "commands.h"
#include "contact_import.h"
#include "failure.h"
#include "runtime/files.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

/// "3 skipped: 2 whose name is used, 1 without a name"; "" when none was.
std::string skipped(const ImportCounts& counts) {
  const std::pair<std::size_t, const char*> reasons[] = {
      {counts.name_used, "whose name is used by a contact or blacklist entry"},
      {counts.no_name, "without a name"},
      {counts.no_group, "whose group has no room (6 groups are in use)"},
      {counts.no_room, "without room (500 contacts are in use)"},
  };
  std::size_t total = 0;
  std::string words;
  for (const auto& [count, reason] : reasons) {
    if (count == 0) continue;
    total += count;
    words += fmt::format("{}{} {}", words.empty() ? "" : ", ", count, reason);
  }
  return total > 0 ? fmt::format(", {} skipped: {}", total, words) : "";
}

void import_contacts(const Phone& phone, const std::string& file) {
  const FileContents contents = read_contacts(phone, Upload(file), file);
  const ImportCounts counts = merge_contacts(phone.phonebook(), contents);
  phone.output().done(
      fmt::format("Imported {}: {} contacts added{}.", file, counts.added, skipped(counts)),
      {{"added", counts.added},
       {"name_used", counts.name_used},
       {"no_name", counts.no_name},
       {"no_group", counts.no_group},
       {"no_room", counts.no_room}});
  if (!contents.note.empty()) remark(fmt::format("{}: {}", file, contents.note));
}

bool holds_comma(std::string_view value) { return value.find(',') != std::string_view::npos; }

/// The values of a contact's row, those of its group included.
bool moves_columns(const CONTACT_SUMMARY_T& contact, const std::vector<GROUP_DATA_T>& groups) {
  std::vector<std::string_view> values = {
      contact.DisplayName, contact.OfficeNumber, contact.MobileNumber, contact.OtherNumber,
      contact.Group,       contact.Ring,         contact.Photo};
  for (const GROUP_DATA_T& group : groups) {
    if (std::string_view(group.Name) != contact.Group) continue;
    values.insert(values.end(), {group.Ring, group.Description});
  }
  return std::any_of(values.begin(), values.end(), holds_comma);
}

bool has_longer_number(const CONTACT_DATA_T& contact, const CONTACT_SUMMARY_T& exported) {
  return std::string_view(contact.OfficeNumber) != exported.OfficeNumber ||
         std::string_view(contact.MobileNumber) != exported.MobileNumber ||
         std::string_view(contact.OtherNumber) != exported.OtherNumber;
}

void remark_on_losses(const Phonebook& phonebook, const Summaries& contacts) {
  const std::vector<GROUP_DATA_T> groups = phonebook.groups();
  const auto moved = std::count_if(contacts.begin(), contacts.end(), [&](const auto& contact) {
    return moves_columns(contact, groups);
  });
  if (moved > 0) {
    remark(
        fmt::format("A comma stands in {} rows, in the contact or in its group; a reader takes "
                    "it for the end of a column, and what follows moves to the right.",
                    moved));
  }
  const auto cut = std::count_if(contacts.begin(), contacts.end(), [&](const auto& contact) {
    return has_longer_number(phonebook.contact(contact.Id), contact);
  });
  if (cut > 0) remark(fmt::format("Numbers of {} contacts are cut to 31 characters.", cut));
}

/// All contacts as a list. Those of "Default" come first: an import that meets five other groups
/// before it drops the row that would bring it in.
Summaries contacts_to_export(const Phonebook& phonebook) {
  Summaries contacts = phonebook.contacts();
  std::stable_partition(contacts.begin(), contacts.end(), [](const CONTACT_SUMMARY_T& contact) {
    return std::string_view(contact.Group) == "Default";
  });
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    contacts[i].next = i + 1 < contacts.size() ? &contacts[i + 1] : nullptr;
  }
  return contacts;
}

void export_contacts(const Phone& phone, const std::string& file) {
  const Target target(file);
  Summaries contacts = contacts_to_export(phone.phonebook());
  CONTACT_SUMMARY_T* head = contacts.empty() ? nullptr : contacts.data();
  if (phone.host().callbacks().save_contact_csv(file.c_str(), head) != 0) target.fail();
  remark_on_losses(phone.phonebook(), contacts);
  if (target.is_output()) return;
  phone.output().done(fmt::format("Exported {} contacts to {}.", contacts.size(), file),
                      {{"contacts", contacts.size()}, {"file", file}});
}

void check_contacts(const Phone& phone, const std::string& file) {
  const FileContents contents = read_contacts(phone, Upload(file), file);
  phone.output().done(
      fmt::format("{} is a contact file: {} contacts in {} groups.", file, contents.contacts.size(),
                  contents.groups.size()),
      {{"file", file}, {"contacts", contents.contacts.size()}, {"groups", contents.groups.size()}});
  if (!contents.note.empty()) remark(fmt::format("{}: {}", file, contents.note));
}

/// What the plug-in writes of community data.
std::string community_file(const Phone& phone, COMMUNITY_DATA_T* data) {
  const host::Callbacks& callbacks = phone.host().callbacks();
  const ScratchFolder folder;
  const fs::path scratch = folder.path() / "community.xml";
  const int result = callbacks.save_community_xml(scratch.c_str(), data);
  const auto content = host::files::read(scratch);
  if (result != 0 || !content) throw Failure("The contacts can not be written. Try -v to see why.");
  return *content;
}

void convert_community(const Phone& phone, const std::string& file, const std::string& name) {
  const Target target(name);
  const Upload upload(file);
  if (!upload.is_csv()) throw Failure(fmt::format("{} has not the extension .csv.", file));
  expect_contact_file(phone, upload, file);
  const Community data = read_community(phone, upload, file);
  target.write(community_file(phone, data.get()));
  if (target.is_output()) return;
  const std::size_t contacts = copy_list(data->Contacts).size();
  const std::size_t groups = copy_list(data->Groups).size();
  phone.output().done(fmt::format("Wrote {}: {} contacts in {} groups.", name, contacts, groups),
                      {{"file", name}, {"contacts", contacts}, {"groups", groups}});
}

}  // namespace

void add_contact_file_commands(Command family, Phone& phone) {
  auto imported = std::make_shared<std::string>();
  Command import = add_command(
      family, "import",
      "Add the contacts of a file (XML, or CSV by the extension .csv) to those that are there. "
      "Names that are used are skipped, groups that are missing are added.",
      "contacts import new-colleagues.xml\n"
      "contacts import customers.csv");
  import.add_option("file", *imported, "The contact file").required();
  on_run(import, phone, [&phone, imported] { import_contacts(phone, *imported); });

  auto exported = std::make_shared<std::string>();
  Command export_command = add_command(family, "export", "Write all contacts to a CSV file",
                                       "contacts export backup.csv");
  export_command.add_option("file", *exported, "The file, which is replaced").required();
  on_run(export_command, phone, [&phone, exported] { export_contacts(phone, *exported); });

  auto checked = std::make_shared<std::string>();
  Command check =
      add_command(family, "check", "Say whether a file can be imported, and what it holds",
                  "contacts check customers.csv\n"
                  "contacts check new-colleagues.xml");
  check.add_option("file", *checked, "The file (XML, or CSV by the extension .csv)").required();
  on_run(check, phone, [&phone, checked] { check_contacts(phone, *checked); });

  auto source = std::make_shared<std::string>();
  auto target = std::make_shared<std::string>();
  Command community = add_command(
      family, "community",
      "Turn a CSV file into a contact file (XML), with every row and group, beside the phone's own "
      "contacts",
      "contacts community customers.csv customers.xml");
  community.add_option("file", *source, "The CSV file").required();
  community.add_option("target", *target, "The XML file, which is replaced").required();
  on_run(community, phone,
         [&phone, source, target] { convert_community(phone, *source, *target); });
}

}  // namespace deskphone
