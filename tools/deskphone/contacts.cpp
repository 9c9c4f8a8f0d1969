// deskphone contacts: list, show, add, change, delete, search, upload; the other commands on files
// are in csv_commands.cpp.
#include <fmt/format.h>

#include <memory>

#include "commands.h"
#include "contact_import.h"
#include "failure.h"
#include "record_options.h"
#include "text.h"
#include "user_file.h"

namespace deskphone {
namespace {

void expect_group(const Phone& phone, const std::string& name) {
  if (phone.phonebook().find_group(name)) return;
  throw Failure(
      fmt::format("There is no group \"{0}\". Add it first: deskphone groups add \"{0}\"", name));
}

void list_contacts(const Phone& phone, const Summaries& contacts) {
  phone.output().list(rows_of(contacts), kContactColumns, "contacts");
}

void add_contact(const Phone& phone, const RecordFields& fields) {
  CONTACT_DATA_T contact{};
  RecordFields defaults;
  defaults.group = "Default";
  defaults.ring = "Auto";
  defaults.photo = "Default";
  defaults.put_into(contact);
  fields.put_into(contact);
  if (contact.DisplayName[0] == '\0') throw Failure("The name is empty. Give the contact a name.");
  expect_group(phone, contact.Group);
  phone.phonebook().add_contact(contact);
  phone.output().done(fmt::format("Added contact {}: {}", contact.Id, contact.DisplayName),
                      row_of(phone.phonebook().contact(contact.Id)));
}

void change_contact(const Phone& phone, int id, const RecordFields& fields) {
  CONTACT_DATA_T contact = phone.phonebook().contact(id);
  if (fields.empty()) throw Failure("There is nothing to change. Give at least one option.");
  fields.put_into(contact);
  if (contact.DisplayName[0] == '\0') throw Failure("--name is empty. Give the contact a name.");
  if (fields.group) expect_group(phone, *fields.group);
  phone.phonebook().change_contact(contact);
  phone.output().done(fmt::format("Changed contact {}: {}", id, contact.DisplayName),
                      row_of(phone.phonebook().contact(id)));
}

struct Deletion {
  std::vector<int> ids;
  std::string group;
  bool all = false;
};

void delete_contacts(const Phone& phone, const Deletion& deletion) {
  const Phonebook& phonebook = phone.phonebook();
  const std::size_t before = phonebook.contacts().size();
  if (deletion.all) {
    phonebook.delete_all_contacts();
  } else if (!deletion.group.empty()) {
    expect_group(phone, deletion.group);
    phonebook.delete_contacts_of(deletion.group);
  } else {
    for (const int id : deletion.ids) phonebook.contact(id);  // all or none
    for (const int id : deletion.ids) phonebook.delete_contact(id);
  }
  const std::size_t deleted = before - phonebook.contacts().size();
  phone.output().done(fmt::format("Deleted {}.", counted(deleted, "contacts")),
                      {{"deleted", deleted}});
}

void upload_contacts(const Phone& phone, const std::string& file) {
  const Upload upload(file);
  expect_contact_file(phone, upload, file);
  const int result = phone.phonebook().upload_contacts(upload.path());
  const std::string note = loading_note(result);
  if (result != 0 && note.empty()) {
    throw Failure(
        fmt::format("{} can not be uploaded (result {}); the contacts are as they were. "
                    "Run it again with -v to see why.",
                    file, result));
  }
  const std::size_t count = phone.phonebook().contacts().size();
  phone.output().done(
      fmt::format("Uploaded {}: the phone has {} now.", file, counted(count, "contacts")),
      {{"contacts", count}});
  if (!note.empty()) remark(note);
}

void add_list_commands(Command family, Phone& phone) {
  auto group = std::make_shared<std::string>();
  Command list = add_command(family, "list", "List the contacts, sorted by name",
                             "contacts list\n"
                             "contacts list --group Sales\n"
                             "--json contacts list");
  list.add_option("--group", *group, "Only the contacts of this group");
  on_run(list, phone, [&phone, group] {
    if (!group->empty()) expect_group(phone, *group);
    list_contacts(phone, phone.phonebook().contacts(*group));
  });

  auto id = std::make_shared<int>();
  Command show = add_command(family, "show", "Show all of one contact",
                             "contacts show 12\n"
                             "--json contacts show 12");
  show.add_option("id", *id, "The contact's id").required();
  on_run(show, phone,
         [&phone, id] { phone.output().record(row_of(phone.phonebook().contact(*id))); });

  auto text = std::make_shared<std::string>();
  Command search = add_command(
      family, "search", "List the contacts with a text in their name or in one of their numbers",
      "contacts search Turner\n"
      "contacts search 7946");
  search.add_option("text", *text, "The text; letter case counts").required();
  on_run(search, phone,
         [&phone, text] { list_contacts(phone, phone.phonebook().search_contacts(*text)); });
}

void add_change_commands(Command family, Phone& phone) {
  auto fields = std::make_shared<RecordFields>();
  Command add = add_command(
      family, "add", "Add a contact",
      "contacts add \"Zoë Baumann\" --office 120 --mobile \"0171 3920071\"\n"
      "contacts add \"Quay & Partners\" --office \"+44 20 7946 0123\" --group Suppliers");
  add.add_option("name", fields->name, "The name, which no other entry has").required();
  add_number_options(add, *fields);
  add_contact_options(add, *fields);
  on_run(add, phone, [&phone, fields] { add_contact(phone, *fields); });

  auto id = std::make_shared<int>();
  auto changes = std::make_shared<RecordFields>();
  Command change = add_command(family, "change", "Change fields of a contact",
                               "contacts change 12 --mobile \"0171 3920072\"\n"
                               "contacts change 12 --name \"Zoë Lüders\" --group Support");
  change.add_option("id", *id, "The contact's id").required();
  change.add_option("--name", changes->name, "The name");
  add_number_options(change, *changes);
  add_contact_options(change, *changes);
  on_run(change, phone, [&phone, id, changes] { change_contact(phone, *id, *changes); });

  auto deletion = std::make_shared<Deletion>();
  Command remove = add_command(family, "delete", "Delete contacts",
                               "contacts delete 12\n"
                               "contacts delete 12 13 14\n"
                               "contacts delete --group Suppliers\n"
                               "contacts delete --all");
  remove.add_option("id", deletion->ids, "The contacts' ids");
  remove.add_option("--group", deletion->group, "Every contact of this group");
  remove.add_flag("--all", deletion->all, "Every contact");
  remove.require_one_option();
  on_run(remove, phone, [&phone, deletion] { delete_contacts(phone, *deletion); });
}

void add_upload_command(Command family, Phone& phone) {
  auto uploaded = std::make_shared<std::string>();
  Command upload = add_command(
      family, "upload",
      "Replace all contacts and groups by those of a file (XML, or CSV by the extension .csv)",
      "contacts upload backup.xml");
  upload.add_option("file", *uploaded, "The contact file").required();
  on_run(upload, phone, [&phone, uploaded] { upload_contacts(phone, *uploaded); });
}

}  // namespace

void add_contacts_commands(Command app, Phone& phone) {
  Command family = add_family(app, "contacts", "The phonebook's contacts");
  add_list_commands(family, phone);
  add_change_commands(family, phone);
  add_upload_command(family, phone);
  add_contact_file_commands(family, phone);
}

}  // namespace deskphone
