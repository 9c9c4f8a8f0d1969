// The remote books and the BroadSoft directories.
#include <cfgxml/remote.h>

#include <utility>

#include "calls/files.h"
#include "calls/world.h"

namespace calls {
namespace {

std::string path_of(int remote) { return "/tmp/remote_contact.xml" + std::to_string(remote); }

/// A path that names no book: who frees or loads a book has to own it.
bool names_book(const char* path) { return cfg_get_remote_book_id(path) != -1; }

/// Whatever path a caller passes in place of a book's.
void pass_odd_path(World& world, Choices& choices) {
  const Text path(choices, choices.word());
  if (path != nullptr && names_book(path)) return;
  world.require(cfg_get_remote_contact_summary(path) == nullptr, "no book was loaded");
  world.expect_result("cfg_destory_remote_conatct_list", cfg_destory_remote_conatct_list(path),
                      {-1});
}

/// Fetches a book's file again, loads and indexes it, and frees it first if it was loaded.
void fetch_book(World& world, Choices& choices) {
  const int remote = choices.number(0, CFGXML_REMOTE_BOOK_COUNT - 1);
  const std::string path = path_of(remote);
  Book& book = world.book(CFGXML_BOOK_REMOTE_FIRST + remote);
  const std::lock_guard<std::mutex> own(book.mutex);
  CfgTrieRemoveRemoteBookInfo(remote);
  world.expect_result("cfg_destory_remote_conatct_list",
                      cfg_destory_remote_conatct_list(path.c_str()), {0});
  world.write(path, remote_book_file(choices));
  book.head = cfg_get_remote_contact_summary(path.c_str());
  book.indexed = CfgTrieReloadRemoteBookInfo(remote) == 0;
  world.require(book.indexed == (book.head != nullptr), "a loaded book was not indexed");
}

void index_book(World& world, Choices& choices) {
  const int remote = choices.number(0, CFGXML_REMOTE_BOOK_COUNT - 1);
  Book& book = world.book(CFGXML_BOOK_REMOTE_FIRST + remote);
  const std::lock_guard<std::mutex> own(book.mutex);
  book.indexed = choices.flag() ? CfgTrieReloadRemoteBookInfo(remote) == 0
                                : CfgTrieRemoveRemoteBookInfo(remote) < 0;
  if (!choices.odd()) return;
  const int none = choices.flag() ? -1 : CFGXML_REMOTE_BOOK_COUNT;
  world.expect_result("CfgTrieReloadRemoteBookInfo", CfgTrieReloadRemoteBookInfo(none), {-1});
  world.expect_result("CfgTrieRemoveRemoteBookInfo", CfgTrieRemoveRemoteBookInfo(none), {0});
}

void read_current_book(World& world, Choices& choices) {
  CONTACT_DATA_T contact{};
  const int result = cfg_get_remote_contact_data(choices.id(), choices.argument(contact));
  world.expect_result("cfg_get_remote_contact_data", result, {0, 5, -1});
  CONTACT_SUMMARY_T* found = cfg_search_remote_contact_info(Text(choices, choices.word()));
  if (found != nullptr) cfg_destory_contact_summary(found);
}

void choose_current_book(World& world, Choices& choices) {
  const int book = choices.odd() ? choices.odd_number() : choices.number(0, 4);
  world.expect_result("cfg_set_remote_contact_summary_clone_id",
                      cfg_set_remote_contact_summary_clone_id(book), {0, -1});
  const int current = cfg_get_remote_contact_summary_clone_id();
  world.require(current >= -1 && current < CFGXML_REMOTE_BOOK_COUNT, "no book is the current one");
}

std::string directory_page(World& world, Choices& choices, const std::string& name) {
  return world.write("/tmp/page-" + name, directory_page_file(choices));
}

void read_directory(World& world, Choices& choices) {
  // One caller at a time writes the page; any may read the list that it goes into.
  static std::mutex page_file;
  {
    const std::lock_guard<std::mutex> own(page_file);
    const std::string path = directory_page(world, choices, "full");
    const Text page(choices, path);
    if (choices.flag()) {
      cfg_get_broadsoft_contact_summary(page);
    } else {
      cfg_add_broadsoft_contact_summary_to_tail(page);
    }
  }
  BSFT_CONTACT_POS_T position;
  cfg_get_broadsoft_conatct_pos(choices.argument(position));
}

void search_directory(World& world, Choices& choices) {
  BSFT_CONTACT_DATA_T entry{};
  const int result = cfg_get_broadsoft_contact_data(choices.id(), choices.argument(entry));
  world.expect_result("cfg_get_broadsoft_contact_data", result, {0, 5, -1});
  BSFT_CONTACT_DATA_T* found = cfg_search_broadsoft_contact_info(Text(choices, choices.word()));
  while (found != nullptr) rl_free(std::exchange(found, found->next));
  if (choices.number(0, 9) != 0) return;
  world.expect_result("cfg_destory_broadsoft_conatct_list", cfg_destory_broadsoft_conatct_list(),
                      {0, -1});
}

void extend_simple_list(World& world, Choices& choices) {
  const int list = choices.number(0, CFGXML_BROADSOFT_LIST_COUNT - 1);
  Book& book = world.book(CFGXML_BOOK_BROADSOFT_FIRST + list);
  const std::lock_guard<std::mutex> own(book.mutex);
  const std::string path = directory_page(world, choices, std::to_string(list));
  CONTACT_SUMMARY_T* head = cfg_append_broadsoft_simple_contact_summary(
      list, Text(choices, path), choices.argument(book.position));
  if (head != nullptr) book.head = head;
  book.indexed = book.head != nullptr;
  if (!choices.odd()) return;
  const int none = choices.flag() ? -1 : CFGXML_BROADSOFT_LIST_COUNT;
  BSFT_CONTACT_POS_T position{};
  head = cfg_append_broadsoft_simple_contact_summary(none, path.c_str(), &position);
  world.require(head == nullptr, "a list that there is not was extended");
  world.expect_result("cfg_destory_broadsoft_simple_conatct_list",
                      cfg_destory_broadsoft_simple_conatct_list(none), {-1});
}

void free_simple_list(World& world, Choices& choices) {
  const int list = choices.number(0, CFGXML_BROADSOFT_LIST_COUNT - 1);
  Book& book = world.book(CFGXML_BOOK_BROADSOFT_FIRST + list);
  const std::lock_guard<std::mutex> own(book.mutex);
  const int result = cfg_destory_broadsoft_simple_conatct_list(list);
  world.expect_result("cfg_destory_broadsoft_simple_conatct_list", result,
                      {book.head != nullptr ? 0 : -1});
  book.head = nullptr;
  book.indexed = false;
  book.position = {};
}

}  // namespace

const std::vector<Call> kRemoteCalls = {
    {"fetch a remote book", 3, fetch_book},
    {"index a remote book", 2, index_book},
    {"read the current book", 6, read_current_book},
    {"choose the current book", 4, choose_current_book},
    {"pass an odd path", 1, pass_odd_path},
    {"read a directory page", 2, read_directory},
    {"search a directory", 4, search_directory},
    {"extend a simple list", 3, extend_simple_list},
    {"free a simple list", 1, free_simple_list},
};

}  // namespace calls
