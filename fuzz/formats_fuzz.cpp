// Any bytes as a file of one of the phone's formats: read as the phone reads it, and checked;
// written, and read again as the same; then used. The program has a name for every target and takes
// the rows of kFormats with the name it was started by; of several the first byte of an input
// chooses one, from '0' on.
#include <cfgxml/binding.h>
#include <cfgxml/broadsoft.h>
#include <cfgxml/csv.h>
#include <cfgxml/notify.h>
#include <cfgxml/remote.h>
#include <cfgxml/search.h>
#include <cfgxml/timezone.h>
#include <cfgxml/xmlbrowser.h>

#include <memory>
#include <set>

#include "phone.h"
#include "support/invariants.h"
#include "support/list_functions.h"
#include "support/records.h"

namespace {

using namespace list_functions;  // NOLINT(google-build-using-namespace): the lists that are fuzzed
using namespace phone_test;      // NOLINT(google-build-using-namespace): what holds of them
namespace paths = cfgxml::paths;

constexpr char kImport[] = "/tmp/import";
constexpr char kFactory[] = "/app/factory/Static/XMLBrowser/document.xml";
constexpr char kEmptyPage[] =
    "<Personal xmlns='http://schema.broadsoft.com/xsi'><entry/></Personal>";
constexpr const char* kBooks[] = {"/tmp/remote_contact.xml0", "/tmp/remote_contact.xml1",
                                  "/tmp/remote_contact.xml2", "/tmp/remote_contact.xml3",
                                  "/tmp/remote_contact.xml4"};

host::Lists& lists() { return host::the_host().lists(); }
CONTACT_DATA_LIST_T& contacts() { return lists().contacts(); }
BLACK_DATA_LIST_T& blacklist() { return lists().blacklist(); }

/// Writes a file for an import, and gives its path.
std::string import_of(std::string_view content) {
  phone().write(kImport, std::string(content));
  return phone().on_disk(kImport);
}

bool is_one_of(int result, std::initializer_list<int> results) {
  return std::find(results.begin(), results.end(), result) != results.end();
}

template <typename Node>
Node* link(std::vector<Node>& nodes) {
  for (std::size_t i = 1; i < nodes.size(); ++i) nodes[i - 1].next = &nodes[i];
  return nodes.empty() ? nullptr : nodes.data();
}

// --- Contacts and blacklist ---

int load_phonebook() {
  lists().clear();
  const int result = contact_init(&contacts());
  REQUIRE(is_one_of(result, {0, 16, 17, 19, -1}));
  REQUIRE(is_one_of(black_init(&blacklist()), {0, 18, 19, -1}));
  return result;
}

/// The used records; there is nothing after them.
std::string contacts_now() {
  return bytes_of(Used(contacts().Groups)) + bytes_of(Used(contacts().Contacts));
}

bool write_phonebook() { return contact_delay_save() == 0 && black_delay_save() == 0; }

void check_phonebook() {
  require_unbroken(broken_phonebook(contacts(), blacklist(), Ids::kAny));
  require_unbroken(broken_membership(contacts()));
  for (const CONTACT_DATA_T& contact : Used(contacts().Contacts)) REQUIRE(*contact.DisplayName);
  for (const CONTACT_DATA_T& entry : Used(blacklist().Entries)) REQUIRE(*entry.Group == '\0');
}

/// What cannot be kept as it came is written first: a file that does not parse, and contacts
/// without a name, which the file names alike.
std::string read_phonebook() {
  if (load_phonebook() == -1 || has_nameless(contacts())) {
    REQUIRE(write_phonebook());
    load_phonebook();
  }
  check_phonebook();
  return contacts_now() + bytes_of(Used(blacklist().Entries));
}

/// A community file has the format of the contacts'.
void write_community() {
  std::vector<GROUP_SUMMARY_T> groups;
  std::vector<COMMUNITY_CONTACT_T> records;
  for (const GROUP_DATA_T& group : Used(contacts().Groups)) {
    std::memcpy(&groups.emplace_back(), &group, sizeof group);
  }
  for (const CONTACT_DATA_T& record : Used(contacts().Contacts)) records.push_back({record, {}});
  COMMUNITY_DATA_T community{{}, link(groups), link(records)};
  const std::string written = contacts_now();
  const std::string path = import_of("<C/>");
  REQUIRE(save_community_xml(path.c_str(), &community) == 0);
  lists().clear();
  REQUIRE(get_contact_xml(path.c_str(), &contacts()) == 0);
  REQUIRE(contacts_now() == written);
}

void use_phonebook(std::string_view given) {
  write_community();
  const std::size_t end = given.find('\0');
  REQUIRE(cfg_del_all_contacts() == 0);  // their names are free for the blacklist
  const std::string entries = import_of(given.substr(end == given.npos ? 0 : end + 1));
  REQUIRE(is_one_of(cfg_upload_blacklist(entries.c_str()), {0, 18, 19, -1}));
  const std::string old = contacts_now();
  const std::string path = import_of(given.substr(0, end));
  const int result = cfg_upload_contact(path.c_str());
  REQUIRE(is_one_of(result, {0, 16, 17, 19, -1}));
  REQUIRE((result != -1) == (is_valid_contact_file_xml(path.c_str()) == 1));
  REQUIRE(result != -1 || contacts_now() == old);
  check_phonebook();
  REQUIRE(CfgTrieReloadLocalBookInfo() == 0);
  require_unbroken(broken_positions(contacts()));
}

/// Every reader of contact CSV files, and the export of what was read.
std::string read_csv() {
  static const auto other = std::make_unique<CONTACT_DATA_LIST_T>();
  const std::string path = phone().on_disk(kImport);
  blacklist().Entries[0] = {0, 1, 0, "Spam", "", "", "", "", "", ""};
  for (CONTACT_DATA_LIST_T* list : {&contacts(), other.get()}) {
    REQUIRE(is_one_of(get_contact_csv(path.c_str(), list), {0, 16, 17, 19}));
  }
  require_unbroken(broken_phonebook(contacts(), blacklist()));  // names in another list may repeat
  COMMUNITY_DATA_T* data = get_community_contact_csv(path.c_str());
  int groups = 0;
  int records = 0;
  for (const GROUP_SUMMARY_T& group : take(data->Groups)) REQUIRE(group.Id == ++groups);
  for (const auto& node : take(data->Contacts)) REQUIRE(node.Contact.Id == ++records);
  REQUIRE(records <= CFGXML_CONTACT_CAPACITY);
  rl_free(data);
  CONTACT_SUMMARY_T* summary = cfg_get_contact_summary("");
  REQUIRE(save_contact_csv(path.c_str(), summary) == 0);
  cfg_destory_contact_summary(summary);
  REQUIRE(is_valid_contact_file_csv(path.c_str()) == 1);
  return "";
}

// --- History ---

std::string read_history() {
  lists().clear();
  REQUIRE(history_init(&lists().history()) == 0);
  require_unbroken(broken_history(lists().history(), Ids::kAny));
  const Used calls(lists().history().Records);
  REQUIRE(take(cfg_get_history_summary()).size() == calls.size());
  return bytes_of(calls);
}

// --- Remote books and directories ---

/// The length of a list whose records have names in order and places from 0 on.
int check_book(const CONTACT_SUMMARY_T* book, bool sorted) {
  std::set<int> places;
  for (const CONTACT_SUMMARY_T* record = book; record != nullptr; record = record->next) {
    REQUIRE(terminated(record->DisplayName, record->OfficeNumber, record->MobileNumber));
    REQUIRE(!sorted || record->next == nullptr ||
            std::strcmp(record->DisplayName, record->next->DisplayName) <= 0);
    REQUIRE(places.insert(record->position).second || !sorted);
  }
  const int length = static_cast<int>(places.size());
  REQUIRE(places.empty() || (*places.begin() == 0 && *places.rbegin() == length - 1));
  return length;
}

/// A search has its end, and a hit stands at its position, with which every record begins.
void search(const char* keys) {
  TRIE_RESULT_T* result = nullptr;
  const int steps = CfgTrieSearchVague(keys, &result);
  REQUIRE(steps >= 0 && steps <= 100);
  for (int place = 0; result != nullptr && place != CFGXML_BOOK_RECORDS; ++place) {
    for (const auto& book : result->records) {
      REQUIRE(book[place] == nullptr || *static_cast<const int*>(book[place]) == place);
    }
  }
}

std::string read_books() {
  Books books{};
  for (int book = 0; book != CFGXML_REMOTE_BOOK_COUNT; ++book) {
    CONTACT_SUMMARY_T* head = cfg_get_remote_contact_summary(kBooks[book]);
    REQUIRE(CfgTrieReloadRemoteBookInfo(book) == (head != nullptr ? 0 : -1));
    const int length = check_book(head, true);
    REQUIRE(length <= CFGXML_BOOK_RECORDS && cfg_set_remote_contact_summary_clone_id(book) == 0);
    REQUIRE(static_cast<int>(take(cfg_search_remote_contact_info("")).size()) == length);
    books[static_cast<std::size_t>(CFGXML_BOOK_REMOTE_FIRST + book)] = head;
  }
  require_unbroken(broken_index(contacts(), books));
  for (const char* keys : {"", "2", "63", "0", "*"}) search(keys);
  for (const CONTACT_SUMMARY_T* head : books) search(head != nullptr ? head->DisplayName : "");
  for (int book = 0; book != CFGXML_REMOTE_BOOK_COUNT; ++book) {
    CfgTrieRemoveRemoteBookInfo(book);
    REQUIRE(cfg_destory_remote_conatct_list(kBooks[book]) == 0);
  }
  require_unbroken(broken_index(contacts(), {}));
  return "";
}

/// A page adds at most 500 entries to the full list, and to the simple one; their heads stay.
std::string read_pages() {
  const void* full = nullptr;
  const CONTACT_SUMMARY_T* simple = nullptr;
  int most = 0;
  BSFT_CONTACT_POS_T position{};
  for (const char* name : kBooks) {
    const std::string page = phone().on_disk(name);
    most += CFGXML_BROADSOFT_PAGE_CAPACITY;
    const void* head = cfg_add_broadsoft_contact_summary_to_tail(page.c_str());
    if (full == nullptr) full = head;
    REQUIRE(head == nullptr || head == full);
    const auto* first = cfg_append_broadsoft_simple_contact_summary(3, page.c_str(), &position);
    if (simple == nullptr) simple = first;
    REQUIRE(first == nullptr || first == simple);
    REQUIRE(check_book(simple, false) <= most);
  }
  const std::vector<BSFT_CONTACT_DATA_T> found = take(cfg_search_broadsoft_contact_info(""));
  REQUIRE(static_cast<int>(found.size()) <= most);
  for (const BSFT_CONTACT_DATA_T& entry : found) {
    REQUIRE(entry.flag == -1 && terminated(entry.LastName, entry.Mobile, entry.Department));
  }
  BSFT_CONTACT_DATA_T data{};
  REQUIRE(cfg_get_broadsoft_contact_data(0, &data) == (found.empty() ? -1 : 0));
  REQUIRE(cfg_destory_broadsoft_simple_conatct_list(3) == (simple != nullptr ? 0 : -1));
  cfg_get_broadsoft_contact_summary(import_of(kEmptyPage).c_str());  // no position is left
  REQUIRE(cfg_destory_broadsoft_conatct_list() == 0);
  return "";
}

// --- Lists that live in their files ---

template <auto list, auto... texts>
std::string read_list() {
  const auto nodes = take(list());
  for (const auto& node : nodes) REQUIRE(terminated(node.*texts...));
  return bytes_of(nodes);
}

/// Writes the list as it is, by the removal of an entry that is not there.
template <auto list, auto remove>
bool write_list() {
  std::set<int> ids;
  for (const auto& node : take(list())) ids.insert(id_of(node));
  int id = -1;
  while (ids.count(id) != 0) --id;
  return remove(id) == 0;
}

template <const auto& list>
void use_rules(std::string_view given) {
  auto rule = std::remove_pointer_t<decltype(list.list())>{};
  rl_strcpy_s(rule.*list.text, sizeof(rule.*list.text), "0049*");
  const std::size_t before = take(list.list()).size();
  const int result = list.add(&rule);
  REQUIRE(before <= list.capacity && is_one_of(result, {0, 7, 10}));
  REQUIRE(take(list.list()).size() == before + (result == 0 ? 1 : 0));
  if (list.upload == nullptr) return;
  phone().write(list.path, std::string(given));
  const std::string stored = bytes_of(take(list.list()));
  const int uploaded = list.upload(import_of(given).c_str());
  REQUIRE(uploaded == -1 || (uploaded == 0 && bytes_of(take(list.list())) == stored));
}

template <int place>
void use_box(std::string_view /*given*/) {
  const Box& box = kBoxes[place];
  SMS_DATA_T message{};
  REQUIRE(box.add(&message) == 0);
  const int id = take(box.list()).front().id;
  REQUIRE(box.get(id, &message) == 0 && message.id == id);
  for (const SMS_DETAILS_T& node : take(cfg_get_all_sms_details_list())) {
    REQUIRE(terminated(node.data.from_user, node.data.server, node.data.content, node.data.time));
  }
  REQUIRE(box.remove_all() == 0 && take(box.list()).empty());
}

/// A zone whose name none has gets that of the first with its value.
void use_zones(std::string_view /*given*/) {
  const std::vector<TIMEZONE_DATA_T> zones = take(cfg_get_timezone_list());
  DST_INFO_T saving{};
  const char* name = zones.empty() ? "" : zones.back().Name;
  REQUIRE(is_one_of(cfg_get_dst_info_by_timezone(name, &saving), {0, -1}));
  REQUIRE(terminated(saving.Start, saving.End, saving.Offset));
  cfg_set_string(26, 64, zones.empty() ? "" : zones.back().TimeZone);
  cfg_set_string(26, 65, "");
  REQUIRE(cfg_match_timezone_name() == (zones.empty() ? -1 : 0));
}

/// An empty list is refused.
bool write_notifications() {
  std::vector<NOTIFICATION_T> list = take(cfg_get_notification_list());
  return list.empty() || cfg_save_notification_list(link(list)) == 0;
}

void replace_notifications(std::string_view /*given*/) {
  const NOTIFICATION_T one{"Device.Time.LocalTimeZone", 2, nullptr};
  REQUIRE(cfg_save_notification_list(&one) == 0);
  REQUIRE(take(cfg_get_notification_list()).size() == 1);
}

// --- Documents of the XML browser ---

/// Takes the object of a slot out as its bytes, checked; "" for none.
template <typename Screen>
std::string take_screen(Screen* screen, int (*release)(), int32_t Screen::*count = nullptr,
                        int capacity = 0) {
  if (screen == nullptr) return "";
  const XML_BROWSER_HEADER_T& header = screen->header;
  REQUIRE(header.type == cfg_get_remote_xml_type());
  REQUIRE(terminated(header.style, header.InputType, header.Next, header.Previous));
  REQUIRE(terminated(header.Selection, header.Exit));
  REQUIRE(count == nullptr || (screen->*count >= 0 && screen->*count <= capacity));
  const std::string bytes = bytes_of(screen);
  release();
  return bytes;
}

/// What a parse makes of a document, as bytes.
std::string parse(const char* path) {
  const int result = cfg_parse_remote_xml(path);
  const int type = cfg_get_remote_xml_type();
  REQUIRE(result == 0 || (result == -1 && type == XML_TYPE_NONE));
  const std::string object =
      take_screen(cfg_get_text_screen_object(), cfg_destory_text_screen_object) +
      take_screen(cfg_get_text_menu_object(), cfg_destory_text_menu_object,
                  &XML_TEXT_MENU_T::ItemCount, CFGXML_MENU_ITEM_CAPACITY) +
      take_screen(cfg_get_xml_browser_directory_object(), cfg_destory_xml_browser_directory_object,
                  &XML_DIRECTORY_T::EntryCount, CFGXML_ENTRY_CAPACITY) +
      take_screen(cfg_get_xml_browser_input_screen_object(),
                  cfg_destory_xml_browser_input_screen_object, &XML_INPUT_SCREEN_T::FieldCount,
                  CFGXML_INPUT_FIELD_CAPACITY) +
      take_screen(cfg_get_xml_browser_configuration_object(),
                  cfg_destory_xml_browser_configuration_object);
  REQUIRE(object.empty() == (type == XML_TYPE_NONE));
  return std::to_string(result) + "," + object;
}

/// Both roads, from a file and from the factory documents, give the same object; but where the
/// cache makes one line end of CR LF, the file road also makes one of LF CR.
void parse_twice(std::string_view given) {
  const std::string loaded = parse(kBooks[0]);
  phone().write(kFactory, std::string(given));
  REQUIRE(cfg_load_local_xml_file_cache() == 0);
  REQUIRE(parse(kFactory) == loaded || given.find('\r') != given.npos);
  cfg_free_local_xml_file_cache();
}

// --- The table ---

struct Format {
  std::string_view target;
  std::vector<const char*> files;           // of several each gets a part of the input
  std::string (*read)() = nullptr;          // what is read, as bytes
  bool (*write)() = nullptr;                // writes what was read; where there is a writer
  void (*use)(std::string_view) = nullptr;  // what else is done; gets the input
};

bool write_history() { return history_delay_save() == 0; }

template <const auto& list>
Format rules() {
  return {"lists_fuzz",
          {list.path},
          read_list<list.list, list.text>,
          write_list<list.list, list.remove>,
          use_rules<list>};
}

template <int place>
Format messages() {
  constexpr const Box& box = kBoxes[place];
  return {"lists_fuzz",
          {paths::kMessages},
          read_list<box.list, &SMS_SUMMARY_T::label>,
          write_list<box.list, box.remove>,
          use_box<place>};
}

const Format kFormats[] = {
    {"contacts_fuzz",
     {paths::kContacts, paths::kBlacklist},
     read_phonebook,
     write_phonebook,
     use_phonebook},
    {"csv_fuzz", {kImport}, read_csv},
    {"history_fuzz", {paths::kHistory}, read_history, write_history},
    {"remote_fuzz", {std::begin(kBooks), std::end(kBooks)}, read_books},
    {"broadsoft_fuzz", {std::begin(kBooks), std::end(kBooks)}, read_pages},
    {"xmlbrowser_fuzz", {kBooks[0]}, nullptr, nullptr, parse_twice},
    rules<kDialNow>(),
    rules<kDialReplace>(),
    rules<kBlockOut>(),
    messages<0>(),
    messages<1>(),
    messages<2>(),
    messages<3>(),
    {"lists_fuzz", {paths::kTimezones}, nullptr, nullptr, use_zones},
    {"lists_fuzz",
     {paths::kNotifications},
     read_list<cfg_get_notification_list, &NOTIFICATION_T::Name>,
     write_notifications,
     replace_notifications},
};

std::vector<const Format*> formats;  // of the target

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** arguments) {
  const std::string target = std::filesystem::path((*arguments)[0]).filename();
  for (const Format& format : kFormats) {
    if (format.target == target) formats.push_back(&format);
  }
  REQUIRE(!formats.empty());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const Format* format = formats.front();
  if (formats.size() > 1) {
    if (input.empty()) return 0;
    format = formats[static_cast<std::uint8_t>(input[0] - '0') % formats.size()];
    input.remove_prefix(1);
  }
  std::string_view rest = input;
  for (const char* file : format->files) {
    const std::size_t end = format->files.size() > 1 ? rest.find('\0') : rest.npos;
    phone().write(file, std::string(rest.substr(0, end)));
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  }
  const std::string given = format->read != nullptr ? format->read() : "";
  if (format->write != nullptr) {
    REQUIRE(format->write());
    const std::string written = format->read();
    // A reference can stand for a carriage return, which is a line end in a file.
    REQUIRE(written == given || (written.size() == given.size() && input.find("&#") != input.npos));
    REQUIRE(format->write() && format->read() == written);
  }
  if (format->use != nullptr) format->use(input);
  return 0;
}
