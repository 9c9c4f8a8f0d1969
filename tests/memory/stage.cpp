#include "stage.h"

#include <cfgxml/broadsoft.h>
#include <cfgxml/remote.h>
#include <cfgxml/xmlbrowser.h>

#include <algorithm>
#include <memory>
#include <set>

/// Nothing here is about what is on the disk, and thousands of files are written.
extern "C" int fsync(int /*descriptor*/) { return 0; }

namespace memory_test {
namespace {

namespace fs = std::filesystem;

/// The books of the fillers: one of its own, so that they never meet a record.
constexpr int kFillerBook = CFGXML_BOOK_COUNT - 1;
std::int32_t filler_record = -1;  // a position of no place in the result table

template <typename Block>
void append_bytes(std::string& bytes, const Block& block) {
  bytes.append(reinterpret_cast<const char*>(&block), sizeof block);
}

void release_books() {
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    CfgTrieRemoveRemoteBookInfo(book);
    cfg_destory_remote_conatct_list(("/tmp/remote_contact.xml" + std::to_string(book)).c_str());
  }
  for (int list = 0; list < CFGXML_BROADSOFT_LIST_COUNT; ++list) {
    cfg_destory_broadsoft_simple_conatct_list(list);
  }
  cfg_destory_broadsoft_conatct_list();
}

void release_screens() {
  cfg_destory_text_screen_object();
  cfg_destory_text_menu_object();
  cfg_destory_xml_browser_directory_object();
  cfg_destory_xml_browser_input_screen_object();
  cfg_destory_xml_browser_configuration_object();
  cfg_free_local_xml_file_cache();
}

int strings_in_index() {
  int count = 0;
  for (int byte = 1; byte < 256; ++byte) {
    const char prefix[] = {static_cast<char>(byte), '\0'};
    count += CfgTrieSearchOfCount(prefix, nullptr);
  }
  return count;
}

int times_in_index(const std::string& text, int book, const void* record) {
  TRIE_ENTRY_T* entry = nullptr;
  CfgTrieSearchOfCount(text.c_str(), &entry);
  int times = 0;
  for (; entry != nullptr; entry = entry->next) {
    times += entry->info.book == book && entry->info.record == record ? 1 : 0;
  }
  return times;
}

}  // namespace

Result name_taken(char* name) {
  const std::unique_ptr<char[]> owner(name);
  return {name != nullptr ? name : "NULL", {}, false};
}

void Stage::clear() {
  cfgxml_set_root(root().c_str());
  release_books();
  release_screens();
  take_fillers();
  host().lists().clear();
  host().saver().forget();
  host().callbacks().contact_save_init(0);
  host().callbacks().black_save_init(0);
  host().callbacks().history_save_init(0);
  CfgTrieReloadLocalBookInfo();
  for (const char* folder : {"/config", "/tmp", "/app", "/import"}) fs::remove_all(on_disk(folder));
  for (const char* folder : {"/config/Phone/Contact", "/config/Phone/History", "/tmp"}) {
    fs::create_directories(on_disk(folder));
  }
  forget_log();
}

State Stage::state() const {
  State state;
  append_bytes(state.blocks, contacts());
  append_bytes(state.blocks, blacklist());
  append_bytes(state.blocks, history());
  for (const auto& entry : fs::recursive_directory_iterator(root())) {
    if (!entry.is_regular_file()) continue;
    const std::string path = entry.path().string().substr(root().string().size());
    state.files[path] = read(path);
  }
  return state;
}

bool Stage::put_filler(int book, const std::string& text, Refuse refuse) {
  const TRIE_INFO_T info{book, &filler_record};
  const Watch watch(refuse, 1);
  if (TrieIncreaseInfo(text.c_str(), &info) != 0) return false;
  fillers_.push_back(text);
  return true;
}

void Stage::take_fillers() {
  const TRIE_INFO_T info{kFillerBook, &filler_record};
  for (const std::string& text : fillers_) TrieDecreaseInfo(text.c_str(), &info);
  fillers_.clear();
}

void Stage::fill_index(int book) {
  // Cells for strings come from a pool per book, those for nodes from one for all. As long as there
  // are more of the first in the fillers' own book, what runs out there are the nodes.
  static std::size_t enough = 256;
  const std::string shared = "~";
  for (;; enough *= 2) {
    for (std::size_t i = 0; i != enough; ++i) put_filler(kFillerBook, shared, Refuse::kNothing);
    take_fillers();
    put_filler(book, shared, Refuse::kNothing);
    while (put_filler(book, shared, Refuse::kAllFrom)) {
    }
    std::size_t nodes = 0;
    while (put_filler(kFillerBook, shared + std::to_string(nodes), Refuse::kAllFrom)) ++nodes;
    if (nodes < enough) return;
    take_fillers();
  }
}

/// Those of a book that was taken out of the index are gone with it.
int Stage::fillers_in_index() const {
  const std::set<std::string> texts(fillers_.begin(), fillers_.end());
  int count = 0;
  for (const std::string& text : texts) {
    TRIE_ENTRY_T* entry = nullptr;
    CfgTrieSearchOfCount(text.c_str(), &entry);
    for (; entry != nullptr; entry = entry->next) count += entry->info.record == &filler_record;
  }
  return count;
}

void Stage::expect_in_index(const std::vector<Indexed>& records) const {
  int strings = fillers_in_index();
  for (const Indexed& record : records) {
    for (const std::string& text : record.texts) {
      if (text.empty()) continue;
      ++strings;
      const auto due = std::count(record.texts.begin(), record.texts.end(), text);
      EXPECT_EQ(times_in_index(text, record.book, record.record), due) << text;
    }
  }
  EXPECT_EQ(strings_in_index(), strings);
}

void Stage::expect_none_in_part(std::vector<Indexed> records) const {
  const auto is_missing = [](const Indexed& record) {
    return std::none_of(record.texts.begin(), record.texts.end(), [&](const std::string& text) {
      return !text.empty() && times_in_index(text, record.book, record.record) > 0;
    });
  };
  records.erase(std::remove_if(records.begin(), records.end(), is_missing), records.end());
  expect_in_index(records);
}

void Stage::expect_contacts_indexed() const {
  std::vector<Indexed> records;
  std::vector<int> positions;
  std::vector<int> places;
  for (CONTACT_DATA_T& contact : contacts().Contacts) {
    if (contact.Id < 1) break;
    places.push_back(static_cast<int>(records.size()));
    records.push_back(indexed(CFGXML_BOOK_LOCAL, contact));
    positions.push_back(contact.position);
  }
  std::sort(positions.begin(), positions.end());
  EXPECT_EQ(positions, places);
  expect_in_index(records);
}

void Stage::TearDown() {
  clear();
  Phone::TearDown();
}

}  // namespace memory_test
