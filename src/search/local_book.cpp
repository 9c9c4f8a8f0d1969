// The local contacts in the index, and the positions of the records of any book.
#include <cfgxml/host.h>

#include <algorithm>

#include "search/index.h"
#include "support/lock.h"
#include "support/slots.h"
#include "support/text.h"

namespace cfgxml::search {
namespace {

/// Numbers the records to which the pointers lead, given in the order of their book. The pointers
/// are left in another one.
template <typename Record>
void number(Record** first, Record** last) {
  std::reverse(first, last);  // the sorts keep the order of equal names: the later ones come first
  Record** named = std::stable_partition(
      first, last, [](const Record* record) { return is_empty(record->DisplayName); });
  std::stable_sort(named, last, [](const Record* left, const Record* right) {
    return rl_strcasecmp(left->DisplayName, right->DisplayName) < 0;
  });

  const RecordWrites writes;
  const auto nameless = static_cast<std::int32_t>(named - first);
  for (Record** record = first; record != named; ++record) (*record)->position = nameless - 1;
  std::int32_t position = nameless;
  for (Record** record = named; record != last; ++record) (*record)->position = position++;
}

/// The old entries leave with the phonebook's lock held too: a contact that another thread added
/// between the two steps would be indexed twice.
int reload_local_book(const char* function) {
  purge(CFGXML_BOOK_LOCAL);
  CONTACT_DATA_LIST_T* list = cfg_get_contact_list();
  if (list == nullptr) {
    rl_log_err("%s failed: cfg_get_contact_list return NULL.", function);
    return -1;
  }
  bool indexed = true;
  for (CONTACT_DATA_T& contact : list->Contacts) {
    if (contact.Id >= 1) indexed = indexed && add_record(CFGXML_BOOK_LOCAL, contact);
  }
  number_positions(*list);
  if (!indexed) rl_log_err("%s failed: out of memory.", function);
  return indexed ? 0 : -1;
}

}  // namespace

void number_positions(CONTACT_DATA_LIST_T& list) {
  CONTACT_DATA_T* contacts[CFGXML_CONTACT_CAPACITY];
  CONTACT_DATA_T** end = contacts;
  for (CONTACT_DATA_T& contact : Contacts(list.Contacts)) *end++ = &contact;
  number(contacts, end);
}

void number_positions(CONTACT_SUMMARY_T* head, Room& room) {
  room.clear();
  for (CONTACT_SUMMARY_T* record = head; record != nullptr; record = record->next) {
    room.push_back(record);
  }
  number(room.data(), room.data() + room.size());
}

}  // namespace cfgxml::search

int CfgTrieReloadLocalBookInfo() {
  return cfgxml::under_lock(cfgxml::Lock::kPhonebook, -1, cfgxml::search::reload_local_book,
                            __func__);
}
