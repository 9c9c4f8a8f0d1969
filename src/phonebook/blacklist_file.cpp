// Reading and writing Blacklist.xml.
#include <cfgxml/binding.h>
#include <cfgxml/host.h>

#include "phonebook/file_format.h"
#include "phonebook/name_index.h"
#include "phonebook/tables.h"
#include "support/lock.h"
#include "support/paths.h"
#include "support/xml_file.h"

namespace cfgxml::phonebook {
namespace {

constexpr char kRootName[] = "BlacklistData";

int read_entries(tinyxml2::XMLElement& root, BLACK_DATA_LIST_T& list) {
  const NameIndex contact_names = NameIndex::of_contacts();
  NameIndex black_names = NameIndex::of_blacklist();
  int stored = 0;
  bool seen = false;
  bool duplicate = false;
  for (const tinyxml2::XMLElement& element : Children(&root, kBlacklistElement)) {
    if (int_attribute(element, kId) < 1) continue;
    seen = true;
    char name[sizeof CONTACT_DATA_T::DisplayName];
    copy_text(name, element.Attribute("DisplayName"));
    if (black_names.contains(name) || contact_names.contains(name)) {
      duplicate = true;
      continue;
    }
    CONTACT_DATA_T& entry = list.Entries[stored];
    Fields(kContactFields).read(element, entry);  // the group is written, but not read back
    black_names.add(entry);
    if (++stored == CFGXML_BLACKLIST_CAPACITY) return 18;
  }
  if (!seen) return -1;
  if (!duplicate) return 0;
  black_save();  // so that the file loses the skipped entries
  return 19;
}

int read_blacklist_file(BLACK_DATA_LIST_T* list, const char* worker) {
  if (list == nullptr) {
    rl_log_err("%s failed,  black_list is NULL.", worker);
    return -1;
  }
  if (contact_list(worker) == nullptr) return -1;
  XmlFile file(paths::kBlacklist);
  if (!file.load_into_block()) {
    rl_log_err("%s failed,  load file <%s> failed.", worker, paths::kBlacklist);
    return -1;
  }
  tinyxml2::XMLElement* root = file.root();
  if (root == nullptr) {
    rl_log_err("%s failed,  get file <%s> root failed.", worker, paths::kBlacklist);
    return -1;
  }
  BlackSlots(list->Entries).clear();
  return read_entries(*root, *list);
}

bool write_entries(BLACK_DATA_LIST_T& list, tinyxml2::XMLElement* root, const char* worker) {
  for (const CONTACT_DATA_T& entry : BlackSlots(list.Entries)) {
    if (append_record<CONTACT_DATA_T>(root, kBlacklistElement, kBlacklistFields, entry, worker) ==
        nullptr) {
      return false;
    }
  }
  return true;
}

int write_blacklist_file(BLACK_DATA_LIST_T* list, const char* worker) {
  rl_log_info("Enter %s", worker);
  XmlFile file(paths::kBlacklist);
  if (!file.load()) {
    rl_log_warn("%s:load file <%s> failed, create a new file!", worker, file.path());
    if (!file.recreate(worker)) return -1;
  }
  tinyxml2::XMLElement* root = file.root_or_new(worker, kRootName);
  root->DeleteChildren();
  SaveOrder::Number number = 0;
  {
    const ScopedLock hold(Lock::kPhonebook);
    if (list == nullptr) {
      rl_log_err("%s failed: cfg_get_black_list return NULL.", worker);
      return -1;
    }
    if (!write_entries(*list, root, worker)) return -1;
    number = blacklist_saves.take();
  }
  return blacklist_saves.save(number, file, worker);
}

}  // namespace

SaveOrder blacklist_saves;

}  // namespace cfgxml::phonebook

int get_blacklist_xml(const char* /*path*/, BLACK_DATA_LIST_T* list) {
  return cfgxml::guarded(-1, cfgxml::phonebook::read_blacklist_file, list, __func__);
}

int save_blacklist_xml(const char* /*path*/, BLACK_DATA_LIST_T* list) {
  return cfgxml::guarded(-1, cfgxml::phonebook::write_blacklist_file, list, __func__);
}
