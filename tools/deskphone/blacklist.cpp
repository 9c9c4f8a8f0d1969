// deskphone blacklist: list, show, add, change, delete, search, upload.
#include <fmt/format.h>

#include <memory>

#include "commands.h"
#include "failure.h"
#include "record_options.h"
#include "text.h"
#include "user_file.h"

namespace deskphone {
namespace {

void list_entries(const Phone& phone, const Summaries& entries) {
  phone.output().list(rows_of(entries),
                      {{"id", "Id"},
                       {"name", "Name"},
                       {"office", "Office"},
                       {"mobile", "Mobile"},
                       {"other", "Other"}},
                      "blacklist entries");
}

void add_entry(const Phone& phone, const RecordFields& fields) {
  CONTACT_DATA_T entry{};
  RecordFields defaults;
  defaults.group = "Default";
  defaults.put_into(entry);
  fields.put_into(entry);
  if (entry.DisplayName[0] == '\0') throw Failure("The name is empty. Give the entry a name.");
  phone.phonebook().add_blacklist_entry(entry);
  phone.output().done(fmt::format("Added blacklist entry {}: {}", entry.Id, entry.DisplayName),
                      row_of(entry));
}

void change_entry(const Phone& phone, int id, const RecordFields& fields) {
  CONTACT_DATA_T entry = phone.phonebook().blacklist_entry(id);
  if (fields.empty()) throw Failure("There is nothing to change. Give at least one option.");
  fields.put_into(entry);
  if (entry.DisplayName[0] == '\0') throw Failure("--name is empty. Give the entry a name.");
  phone.phonebook().change_blacklist_entry(entry);
  phone.output().done(fmt::format("Changed blacklist entry {}: {}", id, entry.DisplayName),
                      row_of(entry));
}

struct Deletion {
  std::vector<int> ids;
  bool all = false;
};

void delete_entries(const Phone& phone, const Deletion& deletion) {
  const Phonebook& phonebook = phone.phonebook();
  const std::size_t before = phonebook.blacklist().size();
  if (deletion.all) {
    phonebook.delete_all_blacklist();
  } else {
    for (const int id : deletion.ids) phonebook.blacklist_entry(id);  // all or none
    for (const int id : deletion.ids) phonebook.delete_blacklist_entry(id);
  }
  const std::size_t deleted = before - phonebook.blacklist().size();
  phone.output().done(fmt::format("Deleted {}.", counted(deleted, "blacklist entries")),
                      {{"deleted", deleted}});
}

void upload_blacklist(const Phone& phone, const std::string& file) {
  const Upload upload(file);
  const Phonebook& phonebook = phone.phonebook();
  const int result = phonebook.upload_blacklist(upload.path());
  if (result == -1) {
    throw Failure(fmt::format(
        "{} is not a blacklist file; the blacklist is as it was. It has to be "
        "well-formed XML with Blacklist elements below its root; -v says what is wrong.",
        file));
  }
  const std::size_t count = phonebook.blacklist().size();
  phone.output().done(
      fmt::format("Uploaded {}: the phone has {} now.", file, counted(count, "blacklist entries")),
      {{"entries", count}});
  const std::string note = loading_note(result);
  if (!note.empty()) remark(note);
}

void add_list_commands(Command family, Phone& phone) {
  Command list = add_command(family, "list", "List the entries, sorted by name",
                             "blacklist list\n"
                             "--json blacklist list");
  on_run(list, phone, [&phone] { list_entries(phone, phone.phonebook().blacklist()); });

  auto id = std::make_shared<int>();
  Command show = add_command(family, "show", "Show all of one entry", "blacklist show 4");
  show.add_option("id", *id, "The entry's id").required();
  on_run(show, phone,
         [&phone, id] { phone.output().record(row_of(phone.phonebook().blacklist_entry(*id))); });

  auto text = std::make_shared<std::string>();
  Command search = add_command(
      family, "search", "List the entries with a text in their name or in one of their numbers",
      "blacklist search 0142");
  search.add_option("text", *text, "The text; letter case counts").required();
  on_run(search, phone,
         [&phone, text] { list_entries(phone, phone.phonebook().search_blacklist(*text)); });
}

void add_change_commands(Command family, Phone& phone) {
  auto fields = std::make_shared<RecordFields>();
  Command add = add_command(family, "add", "Add an entry; there are 100 at most",
                            "blacklist add \"Prize draw\" --office \"+1 212 555 0143\"");
  add.add_option("name", fields->name, "The name, which no other entry or contact has").required();
  add_number_options(add, *fields);
  on_run(add, phone, [&phone, fields] { add_entry(phone, *fields); });

  auto id = std::make_shared<int>();
  auto changes = std::make_shared<RecordFields>();
  Command change = add_command(family, "change", "Change fields of an entry",
                               "blacklist change 4 --mobile \"0171 3920073\"");
  change.add_option("id", *id, "The entry's id").required();
  change.add_option("--name", changes->name, "The name");
  add_number_options(change, *changes);
  on_run(change, phone, [&phone, id, changes] { change_entry(phone, *id, *changes); });

  auto deletion = std::make_shared<Deletion>();
  Command remove = add_command(family, "delete", "Delete entries",
                               "blacklist delete 4\n"
                               "blacklist delete --all");
  remove.add_option("id", deletion->ids, "The entries' ids");
  remove.add_flag("--all", deletion->all, "Every entry");
  remove.require_one_option();
  on_run(remove, phone, [&phone, deletion] { delete_entries(phone, *deletion); });

  auto file = std::make_shared<std::string>();
  Command upload = add_command(family, "upload", "Replace all entries by those of an XML file",
                               "blacklist upload backup.xml");
  upload.add_option("file", *file, "The blacklist file").required();
  on_run(upload, phone, [&phone, file] { upload_blacklist(phone, *file); });
}

}  // namespace

void add_blacklist_commands(Command app, Phone& phone) {
  Command family = add_family(app, "blacklist", "The callers that the phone refuses");
  add_list_commands(family, phone);
  add_change_commands(family, phone);
}

}  // namespace deskphone
