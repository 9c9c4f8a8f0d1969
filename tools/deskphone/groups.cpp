// deskphone groups: list, show, add, change, delete.
#include <fmt/format.h>

#include <memory>
#include <optional>

#include "commands.h"
#include "failure.h"
#include "text.h"

namespace deskphone {
namespace {

/// A group and how many contacts it has.
Row counted_row(const Phone& phone, const GROUP_DATA_T& group) {
  Row row = row_of(group);
  row["contacts"] = phone.phonebook().contacts(group.Name).size();
  return row;
}

void list_groups(const Phone& phone) {
  std::vector<Row> rows;
  for (const GROUP_DATA_T& group : phone.phonebook().groups()) {
    rows.push_back(counted_row(phone, group));
  }
  phone.output().list(rows,
                      {{"id", "Id"},
                       {"name", "Name"},
                       {"contacts", "Contacts"},
                       {"ring", "Ring"},
                       {"description", "Description"}},
                      "groups");
}

/// The fields given on the command line; one that was not given leaves the group's as it is.
struct GroupFields {
  std::optional<std::string> name;
  std::optional<std::string> ring;
  std::optional<std::string> description;

  bool empty() const { return !name && !ring && !description; }

  void put_into(GROUP_DATA_T& group) const {
    if (name) set_text(group.Name, "The name", *name);
    if (ring) set_text(group.Ring, "--ring", *ring);
    if (description) set_text(group.Description, "--description", *description);
  }
};

void add_group(const Phone& phone, const GroupFields& fields) {
  GROUP_DATA_T group{};
  set_text(group.Ring, "--ring", "Auto");
  fields.put_into(group);
  phone.phonebook().add_group(group);
  phone.output().done(fmt::format("Added group {}: {}", group.Id, group.Name), row_of(group));
}

void change_group(const Phone& phone, int id, const GroupFields& fields) {
  GROUP_DATA_T group = phone.phonebook().group(id);
  if (fields.empty()) throw Failure("There is nothing to change. Give at least one option.");
  fields.put_into(group);
  if (std::string(group.Name) == "Default") {
    throw Failure(
        "The phone does not change the group \"Default\", nor give another group its "
        "name. Choose another group or name.");
  }
  if (group.Name[0] == '\0') throw Failure("--name is empty. Give the group a name.");
  phone.phonebook().change_group(group);
  phone.output().done(fmt::format("Changed group {}: {}", id, group.Name),
                      counted_row(phone, phone.phonebook().group(id)));
}

struct Deletion {
  std::vector<int> ids;
  bool all = false;
};

void delete_groups(const Phone& phone, const Deletion& deletion) {
  const Phonebook& phonebook = phone.phonebook();
  const std::size_t before = phonebook.groups().size();
  if (deletion.all) {
    phonebook.delete_all_groups();
  } else {
    for (const int id : deletion.ids) phonebook.group(id);  // all or none
    for (const int id : deletion.ids) phonebook.delete_group(id);
  }
  const std::size_t deleted = before - phonebook.groups().size();
  phone.output().done(
      fmt::format("Deleted {}; the contacts are in Default.", counted(deleted, "groups")),
      {{"deleted", deleted}});
}

void add_list_commands(Command family, Phone& phone) {
  Command list = add_command(family, "list", "List the groups with the number of their contacts",
                             "groups list\n"
                             "--json groups list");
  on_run(list, phone, [&phone] { list_groups(phone); });

  auto id = std::make_shared<int>();
  Command show = add_command(family, "show", "Show one group", "groups show 3");
  show.add_option("id", *id, "The group's id").required();
  on_run(show, phone,
         [&phone, id] { phone.output().record(counted_row(phone, phone.phonebook().group(*id))); });
}

void add_change_commands(Command family, Phone& phone) {
  auto fields = std::make_shared<GroupFields>();
  Command add = add_command(family, "add", "Add a group; there are 6 at most",
                            "groups add Workshop --ring Ring4.wav --description \"Hall 2\"");
  add.add_option("name", fields->name, "The name, which no other group has").required();
  add.add_option("--ring", fields->ring, "The ring tone of its contacts");
  add.add_option("--description", fields->description, "What the group is for");
  on_run(add, phone, [&phone, fields] { add_group(phone, *fields); });

  auto id = std::make_shared<int>();
  auto changes = std::make_shared<GroupFields>();
  Command change =
      add_command(family, "change", "Change a group; its contacts stay in it under a new name too",
                  "groups change 3 --name \"Sales EMEA\"\n"
                  "groups change 3 --ring Ring7.wav");
  change.add_option("id", *id, "The group's id").required();
  change.add_option("--name", changes->name, "The name");
  change.add_option("--ring", changes->ring, "The ring tone of its contacts");
  change.add_option("--description", changes->description, "What the group is for");
  on_run(change, phone, [&phone, id, changes] { change_group(phone, *id, *changes); });

  auto deletion = std::make_shared<Deletion>();
  Command remove =
      add_command(family, "delete", "Delete groups; their contacts move to the group Default",
                  "groups delete 3\n"
                  "groups delete --all");
  remove.add_option("id", deletion->ids, "The groups' ids");
  remove.add_flag("--all", deletion->all, "Every group but Default");
  remove.require_one_option();
  on_run(remove, phone, [&phone, deletion] { delete_groups(phone, *deletion); });
}

}  // namespace

void add_groups_commands(Command app, Phone& phone) {
  Command family = add_family(app, "groups", "The phonebook's groups");
  add_list_commands(family, phone);
  add_change_commands(family, phone);
}

}  // namespace deskphone
