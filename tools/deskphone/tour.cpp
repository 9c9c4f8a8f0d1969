// deskphone tour: what the phone does, on a copy of the profile.
#include "tour.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "commands.h"
#include "failure.h"
#include "runtime/files.h"
#include "text.h"
#include "tour_calls.h"
#include "tour_restart.h"
#include "tour_screens.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

constexpr char kGuest[] = "Tour Guest";
constexpr char kGuestKeys[] = "8687";  // T O U R
constexpr std::size_t kKeysTyped = 4;

void show_books(Phone& phone) {
  const Phonebook& phonebook = phone.phonebook();
  fmt::print("  {} contacts in {} groups, {} blacklist entries\n", phonebook.contacts().size(),
             phonebook.groups().size(), phonebook.blacklist().size());
  for (const GROUP_DATA_T& group : phonebook.groups()) {
    fmt::print("    {} {} contacts\n", fit(printable(group.Name), 20),
               phonebook.contacts(group.Name).size());
  }
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    if (!fs::exists(phone.host().on_disk(remote_path(book).c_str()))) continue;
    fmt::print("    {} {} records\n", fit(book_name(book + CFGXML_BOOK_REMOTE_FIRST), 20),
               phone.search().load_book(book));
  }
}

/// The key on which a letter is printed, or 0.
char key_of(char letter) {
  constexpr std::string_view kKeyOfLetter = "22233344455566677778889999";
  if (letter >= 'A' && letter <= 'Z') return kKeyOfLetter[static_cast<std::size_t>(letter - 'A')];
  if (letter >= 'a' && letter <= 'z') return kKeyOfLetter[static_cast<std::size_t>(letter - 'a')];
  return 0;
}

/// The first keys of a name, "" when it does not begin with as many letters of the keypad.
std::string keys_of(const std::string& name) {
  std::string keys;
  for (const char letter : name.substr(0, kKeysTyped)) {
    if (const char key = key_of(letter)) keys.push_back(key);
  }
  return keys.size() == kKeysTyped ? keys : "";
}

/// A contact whose name the first keys share with as many others as possible.
CONTACT_SUMMARY_T liveliest_contact(const Phone& phone) {
  CONTACT_SUMMARY_T best{};
  std::size_t most = 0;
  for (const CONTACT_SUMMARY_T& contact : phone.phonebook().contacts()) {
    const std::string keys = keys_of(contact.DisplayName);
    if (keys.empty()) continue;
    const std::size_t hits = phone.search().find(keys.substr(0, kKeysTyped - 1)).rows.size();
    if (hits > most) {
      most = hits;
      best = contact;
    }
  }
  return best;
}

bool names(const Hits& hits, const std::string& name) {
  return std::any_of(hits.rows.begin(), hits.rows.end(),
                     [&name](const Row& row) { return row["name"] == name; });
}

void print_hits(const std::string& keys, const Hits& hits) {
  constexpr std::size_t kShown = 3;
  std::string shown;
  for (std::size_t i = 0; i < std::min(kShown, hits.rows.size()); ++i) {
    shown += (i > 0 ? ", " : "") + printable(hits.rows[i]["name"].get<std::string>());
  }
  fmt::print("  {:<6} {:<9} {}{}\n", keys,
             counted(hits.rows.size(), "hits") + (hits.complete ? "" : "+"), shown,
             hits.rows.size() > kShown ? ", ..." : "");
}

void type_a_name(Phone& phone) {
  const CONTACT_SUMMARY_T contact = liveliest_contact(phone);
  const std::string name = contact.DisplayName;
  if (name.empty()) {
    fmt::print("  No contact has a name of the keypad's letters; add one and come back.\n");
    return;
  }
  fmt::print("  {}, key by key:\n", name);
  const std::string keys = keys_of(name);
  for (std::size_t typed = 1; typed <= keys.size(); ++typed) {
    const Hits hits = phone.search().find(keys.substr(0, typed));
    print_hits(keys.substr(0, typed), hits);
    expect_on_tour(!hits.complete || names(hits, name), "The keypad finds the contact");
  }
}

CONTACT_DATA_T guest() {
  CONTACT_DATA_T contact{};
  set_text(contact.DisplayName, "name", kGuest);
  set_text(contact.MobileNumber, "number", "+49 171 3920099");
  set_text(contact.Group, "group", "Default");
  set_text(contact.Ring, "ring", "Auto");
  set_text(contact.Photo, "photo", "Default");
  return contact;
}

/// The guest's id among the contacts.
int guest_id(const Phone& phone) {
  const Summaries found = phone.phonebook().search_contacts(kGuest);
  expect_on_tour(!found.empty(), "The added contact is listed");
  return found.front().Id;
}

void add_a_contact(Phone& phone) {
  CONTACT_DATA_T contact = guest();
  phone.phonebook().add_contact(contact);
  fmt::print("  Added contact {}: {}, {}\n", contact.Id, contact.DisplayName, contact.MobileNumber);
  const Hits hits = phone.search().find(kGuestKeys);
  print_hits(kGuestKeys, hits);
  expect_on_tour(names(hits, kGuest), "The keypad finds the added contact");
}

void add_it_again(Phone& phone) {
  try {
    CONTACT_DATA_T contact = guest();
    phone.phonebook().add_contact(contact);
  } catch (const Failure& refusal) {
    fmt::print("  Refused: {}\n", refusal.what());
    return;
  }
  expect_on_tour(false, "A name that is used is refused");
}

void move_there_and_back(Phone& phone) {
  const Phonebook& phonebook = phone.phonebook();
  const CONTACT_DATA_T entry = phonebook.move_to_blacklist(guest_id(phone));
  fmt::print("  To the blacklist: {} is entry {} of {}\n", entry.DisplayName, entry.Id,
             phonebook.blacklist().size());
  print_hits(kGuestKeys, phone.search().find(kGuestKeys));
  expect_on_tour(!names(phone.search().find(kGuestKeys), kGuest),
                 "The keypad does not find a blacklist entry");
  const CONTACT_DATA_T contact = phonebook.move_to_contacts(entry.Id);
  fmt::print("  And back: contact {} in the group {}\n", contact.Id, contact.Group);
  print_hits(kGuestKeys, phone.search().find(kGuestKeys));
  expect_on_tour(names(phone.search().find(kGuestKeys), kGuest), "The keypad finds it again");
}

/// The steps in their order; the restart ends the phone and comes last.
constexpr TourStep kSteps[] = {
    {"The phone and its books", show_books},
    {"Typing a name on the keypad", type_a_name},
    {"Adding a contact", add_a_contact},
    {"Adding it again", add_it_again},
    {"Moving it to the blacklist and back", move_there_and_back},
    {"Being called", tour_calls},
    {"A menu and a directory from the XML browser", tour_screens},
    {"Reading a message", tour_messages},
    {"Adding a dial rule", tour_dialrules},
    {"Restarting", tour_restart},
};

/// Copies the profile, with the sample books in the place of remote books that it does not have.
void copy_profile(const fs::path& root, const fs::path& copy) {
  const Profile original(root);
  for (const char* folder : {"config", "tmp", "app"}) {
    if (fs::exists(root / folder)) {
      fs::copy(root / folder, copy / folder, fs::copy_options::recursive);
    }
  }
  const char* books[] = {"company.xml", "town.xml"};
  for (int book = 0; book < 2; ++book) {
    const fs::path file = copy / ("." + remote_path(book));
    if (!fs::exists(file)) fs::copy_file(samples() / "remote" / books[book], file);
  }
}

/// An earlier visitor's contact, that a profile may hold, would take the name.
void remove_guests(const Phone& phone) {
  for (const CONTACT_SUMMARY_T& old : phone.phonebook().search_contacts(kGuest)) {
    phone.phonebook().delete_contact(old.Id);
  }
}

void walk(Phone& phone) {
  phone.load_remote_books();
  remove_guests(phone);
  int number = 0;
  for (const TourStep& step : kSteps) {
    fmt::print("\n{}. {}\n", ++number, step.title);
    step.run(phone);
  }
}

void tour(Phone& phone) {
  const fs::path root = phone.options().root;
  const ScratchFolder scratch;
  const fs::path copy = scratch.path() / "phone";
  fs::create_directory(copy);
  copy_profile(root, copy);
  fmt::print("A tour of the phone on a copy of {}; nothing in it changes.\n", root.string());
  phone.start(copy);
  try {
    walk(phone);
  } catch (...) {
    phone.stop();  // while its folder is there
    throw;
  }
  fmt::print("\nThat was the tour. Next: deskphone --help\n");
}

}  // namespace

void expect_on_tour(bool holds, const char* what) {
  if (!holds) throw Failure(fmt::format("The tour failed. Expected: {}.", what));
}

void add_tour(Command app, Phone& phone) {
  Command command =
      add_command(app, "tour", "Show what the phone does, on a copy of its files", "tour");
  command.on_run([&phone] { tour(phone); });
}

}  // namespace deskphone
