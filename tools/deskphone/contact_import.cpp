#include "contact_import.h"

#include <cfgxml/host.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "failure.h"
#include "text.h"

namespace deskphone {
namespace {

constexpr int kNameUsed = 7;
constexpr int kGroupsFull = 16;
constexpr int kContactsFull = 17;
constexpr char kDefaultGroup[] = "Default";

using Names = std::set<std::string>;

template <typename Node>
void free_nodes(Node* node) {
  while (node != nullptr) rl_free(std::exchange(node, node->next));
}

GROUP_DATA_T as_data(const GROUP_SUMMARY_T& summary) {
  GROUP_DATA_T group{};
  group.Id = summary.Id;
  std::copy(std::begin(summary.Name), std::end(summary.Name), group.Name);
  std::copy(std::begin(summary.Ring), std::end(summary.Ring), group.Ring);
  std::copy(std::begin(summary.Description), std::end(summary.Description), group.Description);
  return group;
}

FileContents read_csv(const Phone& phone, const Upload& upload, const std::string& name) {
  const Community data = read_community(phone, upload, name);
  FileContents contents;
  for (const auto& group : copy_list(data->Groups)) contents.groups.push_back(as_data(group));
  for (const auto& node : copy_list(data->Contacts)) contents.contacts.push_back(node.Contact);
  if (contents.contacts.size() == CFGXML_CONTACT_CAPACITY) {
    contents.note = "The first 500 rows were read; if there were more, they were left out.";
  }
  return contents;
}

FileContents read_xml(const Phone& phone, const Upload& upload, const std::string& name) {
  const auto list = std::make_unique<CONTACT_DATA_LIST_T>();
  const int result = phone.host().adapter().read_contact_file(upload.path(), *list);
  if (result == -1) throw Failure(fmt::format("{} can not be read.", name));
  FileContents contents;
  contents.note = loading_note(result);
  for (const GROUP_DATA_T& group : list->Groups) {
    if (group.Id >= 1) contents.groups.push_back(group);
  }
  for (const CONTACT_DATA_T& contact : list->Contacts) {
    if (contact.Id >= 1) contents.contacts.push_back(contact);
  }
  return contents;
}

/// Adds the groups that the phone does not have; the names of those that it has then.
Names merge_groups(const Phonebook& phonebook, const std::vector<GROUP_DATA_T>& groups) {
  Names names = {kDefaultGroup};
  for (const GROUP_DATA_T& group : phonebook.groups()) names.insert(group.Name);
  for (GROUP_DATA_T group : groups) {
    if (group.Name[0] == '\0' || names.count(group.Name) != 0) continue;
    const int result = phonebook.try_to_add_group(group);
    if (result == kGroupsFull) continue;
    expect_success(result, {"group", "groups", 0, printable(group.Name)});
    names.insert(group.Name);
  }
  return names;
}

void merge_contact(const Phonebook& phonebook, const Names& groups, CONTACT_DATA_T contact,
                   ImportCounts& counts) {
  if (contact.Group[0] == '\0') set_text(contact.Group, "group", kDefaultGroup);
  if (contact.DisplayName[0] == '\0') {
    ++counts.no_name;
    return;
  }
  if (groups.count(contact.Group) == 0) {
    ++counts.no_group;
    return;
  }
  const int result = phonebook.try_to_add_contact(contact);
  if (result == kNameUsed) {
    ++counts.name_used;
  } else if (result == kContactsFull) {
    ++counts.no_room;
  } else {
    expect_success(result, {"contact", "contacts", 0, printable(contact.DisplayName)});
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

void FreeCommunity::operator()(COMMUNITY_DATA_T* data) const {
  free_nodes(data->Groups);
  free_nodes(data->Contacts);
  rl_free(data);
}

Community read_community(const Phone& phone, const Upload& upload, const std::string& name) {
  Community data(phone.host().callbacks().get_community_contact_csv(upload.path()));
  if (data == nullptr) throw Failure(fmt::format("{} can not be read.", name));
  return data;
}

FileContents read_contacts(const Phone& phone, const Upload& upload, const std::string& name) {
  expect_contact_file(phone, upload, name);
  return upload.is_csv() ? read_csv(phone, upload, name) : read_xml(phone, upload, name);
}

ImportCounts merge_contacts(const Phonebook& phonebook, const FileContents& contents) {
  const Names groups = merge_groups(phonebook, contents.groups);
  ImportCounts counts;
  for (const CONTACT_DATA_T& contact : contents.contacts) {
    merge_contact(phonebook, groups, contact, counts);
  }
  return counts;
}

}  // namespace deskphone
