// deskphone move: a contact into the blacklist, and a blacklist entry into the contacts.
#include <fmt/format.h>

#include <memory>

#include "commands.h"

namespace deskphone {
namespace {

void move_to_blacklist(const Phone& phone, int id) {
  const CONTACT_DATA_T entry = phone.phonebook().move_to_blacklist(id);
  phone.output().done(fmt::format("Moved contact {} to the blacklist: {} has the id {} there.", id,
                                  entry.DisplayName, entry.Id),
                      row_of(entry));
}

void move_to_contacts(const Phone& phone, int id) {
  const CONTACT_DATA_T contact = phone.phonebook().move_to_contacts(id);
  phone.output().done(
      fmt::format("Moved blacklist entry {} to the contacts: {} has the id {} there.", id,
                  contact.DisplayName, contact.Id),
      row_of(contact));
}

}  // namespace

void add_move_commands(Command app, Phone& phone) {
  Command family = add_family(app, "move", "Move records between contacts and blacklist");

  auto contact = std::make_shared<int>();
  Command refuse = add_command(family, "to-blacklist", "Move a contact into the blacklist",
                               "move to-blacklist 12");
  refuse.add_option("id", *contact, "The contact's id").required();
  on_run(refuse, phone, [&phone, contact] { move_to_blacklist(phone, *contact); });

  auto entry = std::make_shared<int>();
  Command accept = add_command(family, "to-contacts",
                               "Move a blacklist entry into the contacts, in the group Default",
                               "move to-contacts 4");
  accept.add_option("id", *entry, "The entry's id").required();
  on_run(accept, phone, [&phone, entry] { move_to_contacts(phone, *entry); });
}

}  // namespace deskphone
