// Reading Contact.xml, and any file of its format, into a contact list.
#include <cfgxml/host.h>
#include <cfgxml/phonebook.h>

#include <algorithm>

#include "phonebook/file_format.h"
#include "phonebook/name_index.h"
#include "phonebook/tables.h"
#include "support/lock.h"
#include "support/xml_file.h"

namespace cfgxml::phonebook {
namespace {

/// The file's name in the messages about its arguments.
constexpr char kSourceFile[] = "adapter_handle_xml";

/// Fills one list from the elements of one document.
class ContactReader {
 public:
  explicit ContactReader(CONTACT_DATA_LIST_T& list) : list_(list) {}

  void read(tinyxml2::XMLElement& root) {
    for (const tinyxml2::XMLElement& element : Children(&root, kGroupElement)) {
      read_group(element);
    }
    if (!default_stored_) store_default_group();
  }

  /// 19 for skipped duplicates, else 17 or 16 for a full table, else 0.
  int result() const { return duplicate_ ? 19 : result_; }

 private:
  void read_group(const tinyxml2::XMLElement& element) {
    char name[sizeof GROUP_DATA_T::Name];
    copy_text(name, element.Attribute("Name"));
    if (is_empty(name) || int_attribute(element, kId) < 1) return;

    // The last slot stays free for the default group until that is stored.
    const bool is_default = equal(name, kDefaultGroup);
    const int capacity =
        is_default || default_stored_ ? CFGXML_GROUP_CAPACITY : CFGXML_GROUP_CAPACITY - 1;
    if (groups_ >= capacity) {
      result_ = 16;
      return;
    }
    if (is_name_in_group(name, kNoId) == 1) {
      duplicate_ = true;
      return;
    }
    Fields(kGroupFields).read(element, list_.Groups[groups_]);
    default_stored_ = default_stored_ || is_default;
    read_contacts(element, name);
    ++groups_;
  }

  void read_contacts(const tinyxml2::XMLElement& group, const char* group_name) {
    for (const tinyxml2::XMLElement* element = group.FirstChildElement(); element != nullptr;
         element = element->NextSiblingElement()) {
      if (contacts_ == CFGXML_CONTACT_CAPACITY) {
        result_ = 17;
        return;
      }
      if (equal(element->Name(), kContactElement) && int_attribute(*element, kId) >= 1) {
        read_contact(*element, group_name);
      }
    }
  }

  void read_contact(const tinyxml2::XMLElement& element, const char* group_name) {
    char name[sizeof CONTACT_DATA_T::DisplayName];
    copy_text(name, element.Attribute("DisplayName"));
    if (black_names_.contains(name) || contact_names_.contains(name)) {
      duplicate_ = true;
      return;
    }
    CONTACT_DATA_T& contact = list_.Contacts[contacts_];
    Fields(kContactFields).read(element, contact);
    copy_text(contact.Group, group_name);
    contact_names_.add(contact);
    ++contacts_;
  }

  void store_default_group() {
    GROUP_DATA_T& group = list_.Groups[groups_];
    group.Id = GroupSlots(list_.Groups).next_id();
    copy_text(group.Name, kDefaultGroup);
    copy_text(group.Ring, kDefaultRing);
  }

  CONTACT_DATA_LIST_T& list_;
  NameIndex contact_names_ = NameIndex::of_contacts();
  NameIndex black_names_ = NameIndex::of_blacklist();
  int groups_ = 0;
  int contacts_ = 0;
  int result_ = 0;
  bool duplicate_ = false;
  bool default_stored_ = false;
};

int read_contact_file(const char* path, CONTACT_DATA_LIST_T* list) {
  if (path == nullptr || list == nullptr) {
    rl_log_err("Input param is NULL! file: %s, line: %d", kSourceFile, __LINE__);
    return -1;
  }
  XmlFile file(path);
  const bool loaded = file.load();  // while memory may run out the list is as it was

  GroupSlots(list->Groups).clear();
  clear_contacts(*list);
  if (!loaded) {
    rl_log_err("load file <%s> failed!", path);
    return -1;
  }
  tinyxml2::XMLElement* root = file.root();
  if (root == nullptr) {
    rl_log_err("file <%s> has no root element!", path);
    return -1;
  }
  ContactReader reader(*list);
  reader.read(*root);
  contact_data_sync();
  return reader.result();
}

}  // namespace
}  // namespace cfgxml::phonebook

int get_contact_xml(const char* path, CONTACT_DATA_LIST_T* list) {
  return cfgxml::guarded(-1, cfgxml::phonebook::read_contact_file, path, list);
}
