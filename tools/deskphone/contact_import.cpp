#include "contact_import.h"

#include <fmt/format.h>

#include <memory>

#include "failure.h"

namespace deskphone {
namespace {

constexpr int kNameUsed = 7;
constexpr int kGroupsFull = 16;
constexpr int kContactsFull = 17;

/// Adds the groups that the phone does not have; the number of those there was no room for.
std::size_t merge_groups(const Phonebook& phonebook, const CONTACT_DATA_LIST_T& list) {
  std::size_t left_out = 0;
  for (GROUP_DATA_T group : list.Groups) {
    if (group.Id < 1) break;
    if (phonebook.find_group(group.Name)) continue;
    const int result = phonebook.try_to_add_group(group);
    if (result == kGroupsFull) ++left_out;
  }
  return left_out;
}

void count(int result, const CONTACT_DATA_T& contact, ImportCounts& counts) {
  if (result == kNameUsed) {
    ++counts.name_used;
  } else if (result == kContactsFull) {
    ++counts.no_room;
  } else {
    expect_success(result, {"contact", "contacts", 0, contact.DisplayName});
    ++counts.added;
  }
}

}  // namespace

void expect_contact_file(const Phone& phone, const Upload& upload, const std::string& name) {
  if (phone.host().adapter().is_contact_file(upload.path())) return;
  throw Failure(fmt::format(
      "{} is not a contact file. {}", name,
      upload.is_csv() ? "A CSV file begins with the columns FN,N,EMAIL,TEL_HOME,TEL_WORK and so on."
                      : "An XML file is well-formed and has Group elements below its root; a CSV "
                        "file has the extension .csv."));
}

ImportCounts merge_contacts(const Phone& phone, const Upload& upload, const std::string& name) {
  expect_contact_file(phone, upload, name);
  const auto list = std::make_unique<CONTACT_DATA_LIST_T>();
  ImportCounts counts;
  counts.result = phone.host().adapter().read_contact_file(upload.path(), *list);
  if (counts.result == -1) throw Failure(fmt::format("{} can not be read.", name));
  counts.groups_left_out = merge_groups(phone.phonebook(), *list);
  for (CONTACT_DATA_T contact : list->Contacts) {
    if (contact.Id < 1) break;
    count(phone.phonebook().try_to_add_contact(contact), contact, counts);
  }
  return counts;
}

}  // namespace deskphone
