// Writing Contact.xml, and community data in its format.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <string_view>
#include <unordered_map>
#include <vector>

#include "phonebook/file_format.h"
#include "phonebook/tables.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/xml_file.h"

namespace cfgxml::phonebook {
namespace {

constexpr char kRootName[] = "ContactData";

/// Loads the file or recreates it, and returns its root without children; nullptr when it
/// cannot be read.
tinyxml2::XMLElement* open_emptied(XmlFile& file, const char* worker) {
  if (!file.load()) {
    rl_log_warn("%s:load file <%s> failed, create a new file!", worker, file.path());
    if (!file.recreate(worker)) return nullptr;
  }
  tinyxml2::XMLElement* root = file.root_or_new(worker, kRootName);
  root->DeleteChildren();
  return root;
}

/// Groups and the contacts inside them, both in the order in which they are written.
class Content {
 public:
  void add(const GROUP_DATA_T& group) { groups_.push_back(group); }
  void add(const CONTACT_DATA_T& contact) { contacts_[contact.Group].push_back(&contact); }

  bool has_contacts_in(const char* group) const { return contacts_.count(group) != 0; }

  bool write(tinyxml2::XMLElement* root, const char* worker) const {
    for (const GROUP_DATA_T& group : groups_) {
      tinyxml2::XMLElement* element =
          append_record<GROUP_DATA_T>(root, kGroupElement, kGroupFields, group, worker);
      if (element == nullptr) return false;
      const auto contacts = contacts_.find(group.Name);
      if (contacts == contacts_.end()) continue;
      for (const CONTACT_DATA_T* contact : contacts->second) {
        if (append_record<CONTACT_DATA_T>(element, kContactElement, kContactFields, *contact,
                                          worker) == nullptr) {
          return false;
        }
      }
    }
    return true;
  }

 private:
  std::vector<GROUP_DATA_T> groups_;
  std::unordered_map<std::string_view, std::vector<const CONTACT_DATA_T*>> contacts_;
};

/// A contact whose group is missing is in "Default" by now. Where that group was renamed away, the
/// file gets it, so that a reload finds the contact.
Content content_of(CONTACT_DATA_LIST_T& list) {
  Content content;
  const GroupSlots groups(list.Groups);
  for (const GROUP_DATA_T& group : groups) content.add(group);
  for (const CONTACT_DATA_T& contact : ContactSlots(list.Contacts)) content.add(contact);
  if (find_group(list, kDefaultGroup) == nullptr && content.has_contacts_in(kDefaultGroup)) {
    content.add(GROUP_DATA_T{groups.next_id(), "Default", "Auto", ""});
  }
  return content;
}

/// A chain also ends at an id below 1.
Content content_of(const COMMUNITY_DATA_T& data) {
  Content content;
  for (const GROUP_SUMMARY_T* node = data.Groups; node != nullptr && node->Id >= 1;
       node = node->next) {
    GROUP_DATA_T group{};
    group.Id = node->Id;
    copy_text(group.Name, node->Name);
    copy_text(group.Ring, node->Ring);
    copy_text(group.Description, node->Description);
    content.add(group);
  }
  for (const COMMUNITY_CONTACT_T* node = data.Contacts; node != nullptr && node->Contact.Id >= 1;
       node = node->next) {
    content.add(node->Contact);
  }
  return content;
}

int write_contact_file(const char* path, CONTACT_DATA_LIST_T* list, const char* worker) {
  rl_log_info("Enter %s", worker);
  if (path == nullptr || list == nullptr) {
    rl_log_err("%s: Bad parameters", worker);
    return -1;
  }
  XmlFile file(path);
  tinyxml2::XMLElement* root = open_emptied(file, worker);
  if (root == nullptr) return -1;
  SaveOrder::Number number = 0;
  {
    const ScopedLock hold(Lock::kPhonebook);
    contact_data_sync();
    if (!content_of(*list).write(root, worker)) return -1;
    number = contact_saves.take();
  }
  file.redirect(paths::kContacts);
  return contact_saves.save(number, file, worker);
}

int write_community_file(const char* path, COMMUNITY_DATA_T* data, const char* worker) {
  rl_log_info("Enter %s", worker);
  if (path == nullptr || data == nullptr) {
    rl_log_err("%s: Bad parameters", worker);
    return -1;
  }
  XmlFile file(path);
  tinyxml2::XMLElement* root = open_emptied(file, worker);
  if (root == nullptr) return -1;
  {
    const ScopedLock hold(Lock::kPhonebook);
    if (!content_of(*data).write(root, worker)) return -1;
  }
  return file.save(worker);
}

}  // namespace

SaveOrder contact_saves;

}  // namespace cfgxml::phonebook

int save_contact_xml(const char* path, CONTACT_DATA_LIST_T* list) {
  return cfgxml::guarded(-1, cfgxml::phonebook::write_contact_file, path, list, __func__);
}

int save_community_xml(const char* path, COMMUNITY_DATA_T* data) {
  return cfgxml::guarded(-1, cfgxml::phonebook::write_community_file, path, data, __func__);
}
