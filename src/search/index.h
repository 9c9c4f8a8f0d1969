// The search index as the books see it: one process-wide trie behind a mutex of its own.
//
// The mutex is taken inside the host's locks and never held around a call of the host. Memory that
// runs out costs the search a string, never the operation that wanted it indexed.
#pragma once

#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <array>
#include <cstddef>
#include <mutex>

#include "search/keypad_search.h"
#include "search/trie.h"
#include "support/slots.h"

namespace cfgxml::search {

/// The process-wide trie and the search over it; both are used only while the mutex is held.
struct Index {
  std::mutex mutex;
  Trie trie;
  KeypadSearch keypad_search;
};
Index& the_index();

using Contacts = Slots<CONTACT_DATA_T, CFGXML_CONTACT_CAPACITY, &CONTACT_DATA_T::Id>;

/// The texts under which a record is indexed; empty ones are not.
inline constexpr std::size_t kTexts = 4;
using Texts = std::array<const char*, kTexts>;

template <typename Record>
Texts texts_of(const Record& record) {
  return {record.DisplayName, record.OfficeNumber, record.MobileNumber, record.OtherNumber};
}

void add_texts(const TRIE_INFO_T& info, const Texts& texts);
void remove_texts(const TRIE_INFO_T& info, const Texts& texts);

/// Index a record (CONTACT_DATA_T or CONTACT_SUMMARY_T) under its name and numbers, and take it out
/// again: the texts must be those under which it went in.
template <typename Record>
void add_record(int book, Record& record) {
  add_texts({book, &record}, texts_of(record));
}
template <typename Record>
void remove_record(int book, Record& record) {
  remove_texts({book, &record}, texts_of(record));
}

/// Takes a whole book out; returns the number of strings that left.
int purge(int book);

/// Number the records of a book by their names without regard to letter case: a record's position
/// is its place in that order, of equal names the later record's the lower one; records without a
/// name stand in front and all get the last of their places. O(n log n). The list form may throw
/// std::bad_alloc, and changes nothing then.
void number_positions(CONTACT_DATA_LIST_T& list);
void number_positions(CONTACT_SUMMARY_T* head);

/// Takes a used contact out of the table and the index: the later slots move down by one and the
/// last is cleared. The index ends up as if the strings of the contact and of those behind it had
/// been removed before the move, and those of the moved ones added after it, in table order.
void remove_contact(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T* contact);

/// Held while positions are written or indexed records move in memory, so that no search reads them
/// meanwhile. No call of the host or of the index while it is held.
class RecordWrites {
 public:
  RecordWrites() : hold_(the_index().mutex) {}

 private:
  std::lock_guard<std::mutex> hold_;
};

}  // namespace cfgxml::search
