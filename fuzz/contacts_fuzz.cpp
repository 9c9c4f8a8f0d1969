// Any bytes as the phonebook's files, the contacts' and, behind the first NUL byte, the
// blacklist's: read, written and read again; imported; and written again as community data.
#include <cfgxml/binding.h>
#include <cfgxml/search.h>

#include "phone.h"

namespace {

constexpr char kContacts[] = "/config/Phone/Contact/Contact.xml";
constexpr char kBlacklist[] = "/config/Phone/Contact/Blacklist.xml";
constexpr char kImport[] = "/tmp/import.xml";
constexpr char kCommunity[] = "/tmp/community.xml";
constexpr char kNoName[] = "(Empty)";  // what nameless contacts are called, any number of them

CONTACT_DATA_LIST_T& contacts() { return host::the_host().lists().contacts(); }
BLACK_DATA_LIST_T& blacklist() { return host::the_host().lists().blacklist(); }

/// Notes the name of a record, which no other contact or entry has.
void check_name(Names& names, const CONTACT_DATA_T& record) {
  const std::string name = text_of(record.DisplayName);
  require(name.empty() || name == kNoName || names.insert(name).second, "a name is used once");
}

void check_tables() {
  const Names groups = check_groups(contacts());
  require(groups.count("Default") == 1 || is_zero(contacts()), "there is a default group");
  Names names;
  check_packed(contacts().Contacts, [&](const CONTACT_DATA_T& contact) {
    check_texts(contact);
    check_name(names, contact);
    require(contact.DisplayName[0] != '\0', "a contact has a name");
    require(groups.count(contact.Group) == 1, "a contact's group exists");
  });
  check_packed(blacklist().Entries, [&](const CONTACT_DATA_T& entry) {
    check_texts(entry);
    check_name(names, entry);
    require(entry.Group[0] == '\0', "an entry has no group");
  });
}

void clear_tables() {
  std::memset(&contacts(), 0, sizeof contacts());
  std::memset(&blacklist(), 0, sizeof blacklist());
}

/// As the phone does when it starts; the result for the contacts.
int load() {
  clear_tables();
  const int result = contact_init(&contacts());
  require(is_one_of(result, {0, 16, 17, 19, -1}), "a result for contacts");
  require(is_one_of(black_init(&blacklist()), {0, 18, 19, -1}), "a result for the blacklist");
  check_tables();
  return result;
}

int save_and_load() {
  require(contact_delay_save() == 0, "the contacts are written");
  require(black_delay_save() == 0, "the blacklist is written");
  return load();
}

/// Copies of the tables in places of their own: large blocks come slowly under the sanitizer.
const CONTACT_DATA_LIST_T& contacts_now() {
  static CONTACT_DATA_LIST_T copy;
  copy = contacts();
  return copy;
}
const BLACK_DATA_LIST_T& blacklist_now() {
  static BLACK_DATA_LIST_T copy;
  copy = blacklist();
  return copy;
}

int count_nameless() {
  int count = 0;
  for (const CONTACT_DATA_T& contact : contacts().Contacts) {
    if (contact.Id >= 1 && std::strcmp(contact.DisplayName, kNoName) == 0) ++count;
  }
  return count;
}

void check_round() {
  const CONTACT_DATA_LIST_T& old_contacts = contacts_now();
  const BLACK_DATA_LIST_T& old_entries = blacklist_now();
  require(save_and_load() != -1, "what was written is read");
  require(same_bytes(contacts(), old_contacts), "the same contacts are read again");
  require(same_bytes(blacklist(), old_entries), "the same entries are read again");
}

/// A file that cannot be kept as it came is rewritten first. Of several contacts without a name
/// only the first is kept: the file names them all alike.
void read_twice(std::string_view input) {
  const bool loaded = load() != -1;
  if (!loaded || has_references(input) || count_nameless() > 1) save_and_load();
  check_round();
}

COMMUNITY_DATA_T community_of(Nodes<GROUP_SUMMARY_T>& groups, Nodes<COMMUNITY_CONTACT_T>& records) {
  for (const GROUP_DATA_T& group : contacts().Groups) {
    GROUP_SUMMARY_T node{};
    std::memcpy(&node, &group, sizeof group);
    groups.push_back(node);
  }
  for (const CONTACT_DATA_T& contact : contacts().Contacts) {
    if (contact.Id < 1) break;
    records.push_back({contact, nullptr});
  }
  for (std::size_t i = 1; i < groups.size(); ++i) groups[i - 1].next = &groups[i];
  for (std::size_t i = 1; i < records.size(); ++i) records[i - 1].next = &records[i];
  return {{}, groups.data(), records.empty() ? nullptr : records.data()};
}

/// The community file has the format of the contacts'.
void write_community(const std::string& path) {
  const CONTACT_DATA_LIST_T& written = contacts_now();
  Nodes<GROUP_SUMMARY_T> groups;
  Nodes<COMMUNITY_CONTACT_T> records;
  COMMUNITY_DATA_T community = community_of(groups, records);
  require(save_community_xml(path.c_str(), &community) == 0, "the community is written");
  clear_tables();
  require(get_contact_xml(path.c_str(), &contacts()) == 0, "the community is read");
  require(same_bytes(contacts(), written), "the community is the contacts");
}

void import_contacts(const std::string& path) {
  const CONTACT_DATA_LIST_T& old = contacts_now();
  const int result = cfg_upload_contact(path.c_str());
  require(is_one_of(result, {0, 16, 17, 19, -1}), "a result for an import");
  require((result != -1) == (is_valid_contact_file_xml(path.c_str()) == 1),
          "what is valid comes in");
  require(result != -1 || same_bytes(contacts(), old), "a refused import changes nothing");
  check_tables();
}

void import_blacklist(const std::string& path) {
  require(is_one_of(cfg_upload_blacklist(path.c_str()), {0, 18, 19, -1}), "a result for an import");
  check_tables();
}

/// The contacts can be put into the index, which gives every one a place of its own.
void index_contacts() {
  require(CfgTrieReloadLocalBookInfo() == 0, "the contacts are indexed");
  std::set<int> positions;
  for (const CONTACT_DATA_T& contact : contacts().Contacts) {
    if (contact.Id < 1) break;
    require(positions.insert(contact.position).second, "a place is taken once");
  }
  const int last = static_cast<int>(positions.size()) - 1;
  require(positions.empty() || (*positions.begin() == 0 && *positions.rbegin() == last),
          "the places are counted from 0");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Phone phone;
  std::string_view input = text_of_input(data, size);
  const std::string_view contact_file = cut_part(input);
  const std::string_view blacklist_file = input.empty() ? contact_file : input;
  phone.write(kContacts, contact_file);
  phone.write(kBlacklist, blacklist_file);
  read_twice(text_of_input(data, size));

  phone.write(kCommunity, contact_file);
  write_community(phone.on_disk(kCommunity));

  require(cfg_del_all_contacts() == 0, "the names are free for the blacklist");
  phone.write(kImport, blacklist_file);
  import_blacklist(phone.on_disk(kImport));
  phone.write(kImport, contact_file);
  import_contacts(phone.on_disk(kImport));
  index_contacts();
  return 0;
}
