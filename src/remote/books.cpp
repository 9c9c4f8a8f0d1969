// The five remote phonebooks: loading, details, search and freeing, and their place in the index.
#include <cfgxml/host.h>
#include <cfgxml/remote.h>
#include <cfgxml/search.h>

#include <atomic>

#include "phonebook/summaries.h"
#include "phonebook/tables.h"
#include "remote/book_file.h"
#include "search/index.h"
#include "support/chain.h"
#include "support/lock.h"
#include "support/mutex.h"
#include "support/paths.h"
#include "support/xml_file.h"

namespace cfgxml::remote {

namespace {

// Changed under the remote lock only, but for cfg_set_remote_contact_summary_clone_id; atomic since
// the two functions about the current book take no lock.

/// The head of each book's list, nullptr while it is not loaded.
std::atomic<CONTACT_SUMMARY_T*> book_heads[CFGXML_REMOTE_BOOK_COUNT];

/// The current list: the head of one of the books, or nullptr.
std::atomic<CONTACT_SUMMARY_T*> g_remote_contact;

/// Held while a head becomes the current list without the remote lock, and while one goes, so that
/// the current list is never one that was freed. No call of the host while it is held.
Mutex current_mutex;

bool is_book(int book) { return book >= 0 && book < CFGXML_REMOTE_BOOK_COUNT; }

/// Takes a book's list away from it, and from the current list.
CONTACT_SUMMARY_T* take_list(int book) {
  const Hold hold(current_mutex);
  CONTACT_SUMMARY_T* head = book_heads[book].exchange(nullptr);
  if (g_remote_contact == head) g_remote_contact = nullptr;
  return head;
}

CONTACT_SUMMARY_T* _cfg_get_remote_contact_summary(const char* path) {
  if (is_empty(path)) {
    rl_log_err("%s failed: input is NULL.", __func__);
    return nullptr;
  }
  const int book = cfg_get_remote_book_id(path);
  if (book == -1) {
    rl_log_err("%s failed: remote_id=%d", __func__, book);
    return nullptr;
  }
  CONTACT_SUMMARY_T* head = book_heads[book];
  g_remote_contact = head;
  if (head != nullptr) return head;

  XmlFile file(path);
  if (!file.load()) {
    rl_log_err("load file <%s> fail!", path);
    return nullptr;
  }
  if (file.root() == nullptr) return nullptr;
  head = read_book(*file.root());
  book_heads[book] = head;
  g_remote_contact = head;
  return head;
}

int _cfg_get_remote_contact_data(int id, CONTACT_DATA_T* contact_data) {
  if (contact_data == nullptr) {
    rl_log_err("%s failed, contact_data is NULL!", __func__);
    return 5;
  }
  const CONTACT_SUMMARY_T* current = g_remote_contact;
  if (current == nullptr) {
    rl_log_err("%s failed, g_remote_contact is NULL!", __func__);
    return -1;
  }
  const CONTACT_SUMMARY_T* record = current;
  while (record != nullptr && record->Id != id) record = record->next;
  if (record == nullptr) return 0;
  rl_log_debug("Id: %d, name: %s, office: %s, mobile: %s, other: %s.", id, record->DisplayName,
               record->OfficeNumber, record->MobileNumber, record->OtherNumber);
  copy_text(contact_data->DisplayName, record->DisplayName);
  copy_text(contact_data->OfficeNumber, record->OfficeNumber);
  copy_text(contact_data->MobileNumber, record->MobileNumber);
  copy_text(contact_data->OtherNumber, record->OtherNumber);
  return 0;
}

/// A copy holds the record's id, name and numbers.
void fill_match(CONTACT_SUMMARY_T& match, const CONTACT_SUMMARY_T& record) {
  match.Id = record.Id;
  copy_text(match.DisplayName, record.DisplayName);
  copy_text(match.OfficeNumber, record.OfficeNumber);
  copy_text(match.MobileNumber, record.MobileNumber);
  copy_text(match.OtherNumber, record.OtherNumber);
}

CONTACT_SUMMARY_T* _cfg_search_remote_contact_info(const char* keywords) {
  if (keywords == nullptr) {
    rl_log_err("%s failed, keywords is NULL!", __func__);
    return nullptr;
  }
  const CONTACT_SUMMARY_T* current = g_remote_contact;
  if (current == nullptr) {
    rl_log_err("%s failed, g_remote_contact is NULL!", __func__);
    return nullptr;
  }
  Chain<CONTACT_SUMMARY_T> matches;
  for (const CONTACT_SUMMARY_T* record = current; record != nullptr; record = record->next) {
    if (!phonebook::mentions(*record, keywords)) continue;
    CONTACT_SUMMARY_T* match = matches.append();
    if (match == nullptr) break;
    fill_match(*match, *record);
  }
  return sort_chain(matches.release(), phonebook::name_less);
}

int _cfg_destory_remote_conatct_list(const char* path) {
  const int book = cfg_get_remote_book_id(path);
  if (book == -1) {
    rl_log_err("%s failed: remote_id=%d", __func__, book);
    return -1;
  }
  free_chain(take_list(book));
  return 0;
}

/// The old entries leave with the remote lock held too: of two threads that index a book at once,
/// neither adds to what the other has added.
int reload_index(int book, const char* function) {
  search::purge(CFGXML_BOOK_REMOTE_FIRST + book);
  CONTACT_SUMMARY_T* head = book_heads[book];
  search::Room room;
  search::number_positions(head, room);
  for (CONTACT_SUMMARY_T* record = head; record != nullptr; record = record->next) {
    if (search::add_record(CFGXML_BOOK_REMOTE_FIRST + book, *record)) continue;
    rl_log_err("%s failed: out of memory.", function);
    return -1;
  }
  return head != nullptr ? 0 : -1;
}

}  // namespace
}  // namespace cfgxml::remote

using namespace cfgxml;          // NOLINT(google-build-using-namespace): the boundary
using namespace cfgxml::remote;  // NOLINT(google-build-using-namespace): the boundary

int cfg_get_remote_book_id(const char* path) {
  constexpr std::size_t kPrefixLength = sizeof paths::kRemoteBook - 1;
  if (path == nullptr || rl_strlen(path) != kPrefixLength + 1 ||
      rl_strncmp(path, paths::kRemoteBook, kPrefixLength) != 0) {
    return -1;
  }
  const int book = rl_atoi(path + kPrefixLength);
  return is_book(book) ? book : -1;
}

CONTACT_SUMMARY_T* cfg_get_remote_contact_summary(const char* path) {
  return under_lock<CONTACT_SUMMARY_T*>(Lock::kRemote, nullptr, _cfg_get_remote_contact_summary,
                                        path);
}

int cfg_get_remote_contact_summary_clone_id(void) {
  for (int book = 0; book < CFGXML_REMOTE_BOOK_COUNT; ++book) {
    if (book_heads[book] == g_remote_contact) return book;
  }
  return -1;
}

int cfg_set_remote_contact_summary_clone_id(int book) {
  if (!is_book(book)) return -1;
  const Hold hold(current_mutex);
  g_remote_contact = book_heads[book].load();
  return 0;
}

int cfg_get_remote_contact_data(int id, CONTACT_DATA_T* contact_data) {
  return under_lock(Lock::kRemote, -1, _cfg_get_remote_contact_data, id, contact_data);
}

CONTACT_SUMMARY_T* cfg_search_remote_contact_info(const char* keywords) {
  return under_lock<CONTACT_SUMMARY_T*>(Lock::kRemote, nullptr, _cfg_search_remote_contact_info,
                                        keywords);
}

int cfg_destory_remote_conatct_list(const char* path) {
  return under_lock(Lock::kRemote, -1, _cfg_destory_remote_conatct_list, path);
}

int CfgTrieReloadRemoteBookInfo(int book) {
  if (!is_book(book)) return -1;
  return under_lock(Lock::kRemote, -1, reload_index, book, __func__);
}

int CfgTrieRemoveRemoteBookInfo(int book) {
  if (!is_book(book)) return 0;
  return guarded(0, search::purge, CFGXML_BOOK_REMOTE_FIRST + book);
}
