// The six simple lists: name and numbers of the entries, found from the keypad.
#include <cfgxml/broadsoft.h>
#include <cfgxml/host.h>
#include <cfgxml/search.h>

#include <cstdio>
#include <utility>

#include "remote/broadsoft_page.h"
#include "search/index.h"
#include "support/lock.h"
#include "support/text.h"

namespace cfgxml::remote {
namespace {

// Guarded by the remote lock.
CONTACT_SUMMARY_T* simple_lists[CFGXML_BROADSOFT_LIST_COUNT] = {};

bool is_list(int list) { return list >= 0 && list < CFGXML_BROADSOFT_LIST_COUNT; }

int book_of_list(int list) { return CFGXML_BOOK_BROADSOFT_FIRST + list; }

void fill(CONTACT_SUMMARY_T& contact, const tinyxml2::XMLElement& entry, std::int32_t index) {
  contact.Id = index;
  char first_name[64] = {};
  char last_name[64] = {};
  for (const tinyxml2::XMLElement* child = entry.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    const char* name = child->Name();
    const char* text = child->GetText();
    if (equal(name, "firstName") || equal(name, "name")) {
      copy_text(first_name, text);
    } else if (equal(name, "lastName")) {
      copy_text(last_name, text);
    } else if (equal(name, "number")) {
      copy_text(contact.OfficeNumber, text);
    } else if (equal(name, "mobile")) {
      copy_text(contact.MobileNumber, text);
    } else if (equal(name, "extension")) {
      copy_text(contact.OtherNumber, text);
    }
  }
  char display_name[sizeof first_name + sizeof last_name];
  std::snprintf(display_name, sizeof display_name, "%s %s", first_name, last_name);
  copy_text(contact.DisplayName, display_name);
}

/// Room to number the list with a further page.
search::Room room_for_page(const CONTACT_SUMMARY_T* head) {
  std::size_t records = CFGXML_BROADSOFT_PAGE_CAPACITY;
  for (; head != nullptr; head = head->next) ++records;
  search::Room room;
  room.reserve(records);
  return room;
}

/// Counts the page, or, when it was the last one, gives every record its position.
void finish_page(BSFT_CONTACT_POS_T& position, int made, CONTACT_SUMMARY_T* head,
                 search::Room& room) {
  if (made < CFGXML_BROADSOFT_PAGE_CAPACITY && end_of_page(position) < position.total) {
    position.state = saturated(std::int64_t{position.state} + 1);
    return;
  }
  position.state = CFGXML_BROADSOFT_COMPLETE;
  search::number_positions(head, room);
}

CONTACT_SUMMARY_T* _cfg_append_broadsoft_simple_contact_summary(int list, const char* path,
                                                                BSFT_CONTACT_POS_T* pos) {
  if (is_empty(path) || pos == nullptr) {
    rl_log_err("%s failed: input is NULL.", __func__);
    return nullptr;
  }
  if (!is_list(list)) {
    rl_log_err("%s failed: input groud_id is invalid.", __func__);
    return nullptr;
  }
  DirectoryPage page(path);
  if (!page.load()) return nullptr;
  CONTACT_SUMMARY_T*& head = simple_lists[list];
  search::Room room = room_for_page(head);
  const int made = append_page(
      page, *pos, head,
      [list](CONTACT_SUMMARY_T& contact, const tinyxml2::XMLElement& entry, std::int32_t index) {
        fill(contact, entry, index);
        return search::add_record(book_of_list(list), contact);
      });
  if (made >= 0) finish_page(*pos, made, head, room);
  return head;
}

int _cfg_destory_broadsoft_simple_conatct_list(int list) {
  if (!is_list(list)) {
    rl_log_err("%s %d input invalid group id", __func__, __LINE__);
    return -1;
  }
  CONTACT_SUMMARY_T* head = std::exchange(simple_lists[list], nullptr);
  if (head == nullptr) return -1;
  for (CONTACT_SUMMARY_T* contact = head; contact != nullptr; contact = contact->next) {
    search::remove_record(book_of_list(list), *contact);
  }
  free_chain(head);
  return 0;
}

}  // namespace
}  // namespace cfgxml::remote

CONTACT_SUMMARY_T* cfg_append_broadsoft_simple_contact_summary(int list, const char* path,
                                                               BSFT_CONTACT_POS_T* pos) {
  using namespace cfgxml;  // NOLINT(google-build-using-namespace)
  return under_lock(Lock::kRemote, static_cast<CONTACT_SUMMARY_T*>(nullptr),
                    remote::_cfg_append_broadsoft_simple_contact_summary, list, path, pos);
}

int cfg_destory_broadsoft_simple_conatct_list(int list) {
  using namespace cfgxml;  // NOLINT(google-build-using-namespace)
  return under_lock(Lock::kRemote, -1, remote::_cfg_destory_broadsoft_simple_conatct_list, list);
}
