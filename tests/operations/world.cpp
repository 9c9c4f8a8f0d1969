#include "operations/world.h"

#include <cfgxml/binding.h>
#include <cfgxml/dialrule.h>
#include <cfgxml/message.h>
#include <cfgxml/notify.h>
#include <cfgxml/remote.h>
#include <cfgxml/timezone.h>
#include <cfgxml/xmlbrowser.h>
#include <tinyxml2.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <utility>

#include "operations/shapes.h"
#include "runtime/files.h"
#include "support/paths.h"

namespace operations {
namespace {

namespace fs = std::filesystem;
namespace paths = cfgxml::paths;

/// What of the samples lies where on the phone; folders with all they hold.
constexpr std::pair<const char*, const char*> kSamples[] = {
    {"/profile", ""},
    {"/import/dialnow.xml", "/import/dialnow.xml"},
    {"/import/dialreplace.xml", "/import/dialreplace.xml"},
    {"/import/new-colleagues.xml", "/import/new-colleagues.xml"},
    {"/import/phone.csv", "/import/phone.csv"},
    {"/remote/town.xml", "/tmp/remote_contact.xml0"},
    {"/remote/company.xml", "/tmp/remote_contact.xml1"},
    {"/directory/personal-1.xml", "/import/personal-1.xml"},
};
/// What is kept of the elements of one name below one element; of a remote book, what is sorted.
constexpr std::pair<const char*, int> kMost[] = {
    {"Contact", 2}, {"Group", 3}, {"DirectoryEntry", 3}, {"", 4}};

int most_of(const std::string& name) {
  const auto* most = std::begin(kMost);
  while (*most->first != '\0' && most->first != name) ++most;
  return most->second;
}

constexpr char kOtherBlacklist[] =
    "<BlacklistData>\n    <Blacklist Id=\"1\" DisplayName=\"Zed\" OfficeNumber=\"666\"/>\n"
    "    <Blacklist Id=\"2\" DisplayName=\"Yak\" OfficeNumber=\"667\"/>\n</BlacklistData>\n";

/// Leaves the first few elements of every name below an element.
void shorten(tinyxml2::XMLElement* parent) {
  std::map<std::string, int> seen;
  tinyxml2::XMLElement* child = parent->FirstChildElement();
  while (child != nullptr) {
    tinyxml2::XMLElement* const next = child->NextSiblingElement();
    if (++seen[child->Name()] > most_of(child->Name())) {
      parent->DeleteChild(child);
    } else {
      shorten(child);
    }
    child = next;
  }
}

std::string first_lines(const std::string& text, int count) {
  std::size_t end = 0;
  while (count-- > 0) end = text.find('\n', end) + 1;
  return text.substr(0, end);
}

std::string shortened(const fs::path& file) {
  const std::string text = ::host::files::read(file).value_or("");
  tinyxml2::XMLDocument document;
  if (file.extension() == ".csv") return first_lines(text, 1 + most_of(""));
  if (document.Parse(text.c_str()) != 0) return text;
  shorten(document.RootElement());
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return printer.CStr();
}

/// Made once: the files of the common state.
const Files& profile() {
  static const Files all = [] {
    Files files;
    for (const auto& [from, to] : kSamples) {
      const fs::path source = std::string(CFGXML_SAMPLES) + from;
      if (fs::is_regular_file(source)) files[to] = shortened(source);
      if (!fs::is_directory(source)) continue;
      for (const auto& entry : fs::recursive_directory_iterator(source)) {
        if (!entry.is_regular_file()) continue;
        files[to + ("/" + fs::relative(entry.path(), source).string())] = shortened(entry.path());
      }
    }
    files["/import/blacklist.xml"] = kOtherBlacklist;
    return files;
  }();
  return all;
}

/// A file like another one: each of its entries, which stand in a line of their own, is left out,
/// kept, or there several times with a number before every text. Ids stay unique.
std::string varied_text(const std::string& text, Choices& choices) {
  std::string result;
  const int most = choices.odd(Argument::kContent) ? 300 : 2;
  for (std::size_t at = 0; at < text.size() && result.size() < 200000;) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string line = text.substr(at, end - at) + "\n";
    at = end + 1;
    const bool is_entry = line.find("\"/>") != std::string::npos;
    const bool is_row = line.find(",END") != std::string::npos && !result.empty();
    const int times = is_entry || is_row ? choices.number(1, 0, most) : 1;
    for (int copy = 0; copy != times; ++copy) {
      const std::string number = copy > 0 ? std::to_string(9 + copy) : "";
      if (is_row) result += number;
      for (const char byte : line) {
        const bool opens = byte == '"' && !result.empty() && result.back() == '=';
        result += byte;
        if (opens) result += number;
      }
    }
  }
  return result;
}

/// The path of a file that only the calling thread uses.
std::string own_path(const std::string& like) {
  static std::atomic<int> callers{0};
  thread_local const int caller = ++callers;
  const std::size_t dot = like.rfind('.');
  return "/import/own-" + std::to_string(caller) +
         (dot != std::string::npos ? like.substr(dot) : "");
}

template <typename Block>
void append_bytes(std::string& bytes, const Block& block) {
  bytes.append(reinterpret_cast<const char*>(&block), sizeof block);
}

/// Bytes as a person can read them: what is printed, and a point for what is not, once in a row.
std::string readable(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    const bool shown = static_cast<unsigned char>(byte) >= ' ';
    if (shown || text.empty() || text.back() != '.') text += shown ? byte : '.';
  }
  return text + "\n";
}

template <typename Node>
std::string listed(const char* title, Node* head) {
  std::string text = std::string(title) + ":\n";
  for (const std::string& node : list_taken(head).nodes) text += readable(node);
  return text;
}

/// Everything that comes from files and is not in the host's blocks.
std::string listed_from_files() {
  return listed("dial now", cfg_get_dialnow_list()) +
         listed("dial replace", cfg_get_dialreplace_list()) +
         listed("block out", cfg_get_blockout_list()) +
         listed("notifications", cfg_get_notification_list()) +
         listed("messages", cfg_get_all_sms_details_list()) +
         "unread: " + std::to_string(cfg_get_inbox_unread()) + "\n";
}

bool holds_damaged_content(const Files& files) {
  return std::any_of(files.begin(), files.end(),
                     [](const auto& file) { return file.second == kDamaged; });
}

Files files_below(const fs::path& root) {
  Files files;
  if (!fs::exists(root)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    files[entry.path().native().substr(root.native().size())] =
        ::host::files::read(entry.path()).value_or("");
  }
  return files;
}

void write_files(const fs::path& root, const Files& files) {
  for (const auto& [path, text] : files) {
    const fs::path file = root.string() + path;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }
}

/// Makes these the files below the folder; nothing is written twice.
void replace_files(const fs::path& root, const Files& files) {
  Files missing = files;
  for (const auto& [path, text] : files_below(root)) {
    const auto due = files.find(path);
    if (due == files.end()) {
      fs::remove(root.native() + path);
    } else if (due->second == text) {
      missing.erase(path);
    }
  }
  write_files(root, missing);
}

void release_screens() {
  cfg_destory_text_screen_object();
  cfg_destory_text_menu_object();
  cfg_destory_xml_browser_directory_object();
  cfg_destory_xml_browser_input_screen_object();
  cfg_destory_xml_browser_configuration_object();
  cfg_free_local_xml_file_cache();
}

void release_books() {
  for (int book = 0; book != CFGXML_REMOTE_BOOK_COUNT; ++book) {
    CfgTrieRemoveRemoteBookInfo(book);
    cfg_destory_remote_conatct_list(("/tmp/remote_contact.xml" + std::to_string(book)).c_str());
  }
  for (int list = 0; list != CFGXML_BROADSOFT_LIST_COUNT; ++list) {
    cfg_destory_broadsoft_simple_conatct_list(list);
  }
  cfg_destory_broadsoft_conatct_list();
}

}  // namespace

std::string changes(const State& from, const State& to) {
  std::string text = from.blocks == to.blocks ? "" : "other blocks\n";
  for (const auto& [path, content] : to.files) {
    const auto old = from.files.find(path);
    if (old == from.files.end() || old->second != content) text += path + ":\n" + content + "\n";
  }
  for (const auto& [path, content] : from.files) {
    if (to.files.count(path) == 0) text += path + " is gone\n";
  }
  return text;
}

World::World(fs::path root, Callers callers) : root_(std::move(root)), callers_(callers) {
  host().bind(cfgxml_cb_init);
}

World::~World() {
  clear();
  std::error_code error;
  fs::remove_all(root_.native() + "-scratch", error);
}

void World::clear() {
  cfgxml_set_root(root_.c_str());
  set_blocks_missing(false);
  release_books();
  release_screens();
  books_ = {};
  host().saver().forget();
  contact_save_init(0);
  black_save_init(0);
  history_save_init(0);
  host().lists().clear();
  CfgTrieReloadLocalBookInfo();
  behind_ = 0;
  positions_kept_ = lists_kept_ = true;
}

void World::start_phone(const fs::path& root) {
  cfgxml_set_root(root.c_str());
  host().open_profile(root);
  host().lists().clear();
  host().load();
}

void World::start() {
  clear();
  replace_files(root_, profile());
  start_phone(root_);
  CfgTrieReloadLocalBookInfo();
}

void World::watch(std::function<void()> before, std::function<void()> after) {
  before_ = std::move(before);
  after_ = std::move(after);
}

void World::write(const std::string& path, const std::string& text) const {
  write_files(root_, {{path, text}});
}

std::string World::read(const std::string& path) const {
  return ::host::files::read(on_disk(path)).value_or("");
}

void World::copy_sample(const std::string& path) const {
  write(path, shortened(CFGXML_SAMPLES + path));
}

const char* World::file(Choices& choices, const std::string& path, Argument kind) {
  if (!choices.varies()) return choices.path(on_disk(path), kind);
  const std::string own = own_path(path);
  const bool odd = choices.odd(Argument::kContent);
  if (odd) set_lists_kept(false);
  write(own, odd ? choices.odd_text().value_or("") : varied(path, choices));
  return choices.path(on_disk(own), kind);
}

std::string World::varied(const std::string& path, Choices& choices) const {
  const auto file = profile().find(path);
  return varied_text(file != profile().end() ? file->second : shortened(CFGXML_SAMPLES + path),
                     choices);
}

const char* World::target(Choices& choices, const std::string& path, Argument kind) const {
  return choices.path(on_disk(choices.varies() ? own_path("target" + path) : path), kind);
}

Files World::files() const { return files_below(root_); }

State World::state() const {
  State state{"", files()};
  append_bytes(state.blocks, contacts());
  append_bytes(state.blocks, blacklist());
  append_bytes(state.blocks, history());
  return state;
}

std::string World::found_in(const fs::path& folder) {
  start_phone(folder);
  std::string text = readable(bytes_of_record(contacts())) +
                     readable(bytes_of_record(blacklist())) + readable(bytes_of_record(history())) +
                     listed_from_files();
  const Files left = files_below(folder);
  for (const char* path :
       {paths::kDialNow, paths::kDialReplace, paths::kBlockOut, paths::kMessages}) {
    text += (left.count(path) != 0 ? "a file at " : "no file at ") + std::string(path) + "\n";
  }
  return text + (holds_damaged_content(left) ? "damaged content\n" : "");
}

std::string World::found(const Files& files) {
  fs::path scratch = root_;
  scratch += "-scratch";
  for (const char* path : {paths::kContacts, paths::kHistory, paths::kNotifications}) {
    fs::create_directories(fs::path(scratch.string() + path).parent_path());
  }
  replace_files(scratch, files);
  const auto old_contacts = std::make_unique<CONTACT_DATA_LIST_T>(contacts());
  const auto old_blacklist = std::make_unique<BLACK_DATA_LIST_T>(blacklist());
  const auto old_history = std::make_unique<HISTORY_DATA_LIST>(history());
  const std::string text = found_in(scratch);
  contacts() = *old_contacts;
  blacklist() = *old_blacklist;
  history() = *old_history;
  cfgxml_set_root(root_.c_str());
  host().open_profile(root_);
  return text;
}

phone_test::Books World::indexed_books() const {
  phone_test::Books books{};
  for (std::size_t number = CFGXML_BOOK_REMOTE_FIRST; number != CFGXML_BOOK_COUNT; ++number) {
    if (books_[number].indexed) books[number] = books_[number].head;
  }
  return books;
}

void World::set_blocks_missing(bool missing) {
  host().lists().give_contacts(!missing);
  host().lists().give_blacklist(!missing);
  host().lists().give_history(!missing);
  blocks_missing_ = missing;
}

void World::require(bool holds, const std::string& fault) {
  if (holds) return;
  const std::lock_guard<std::mutex> hold(mutex_);
  if (fault_.empty()) fault_ = fault;
}

std::string World::take_fault() {
  const std::lock_guard<std::mutex> hold(mutex_);
  return std::exchange(fault_, "");
}

}  // namespace operations
