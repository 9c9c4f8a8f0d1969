// The search index as the books see it: one process-wide trie behind a mutex of its own.
//
// The mutex is taken inside the host's locks and never held around a call of the host. Memory that
// runs out leaves a record out of the index as a whole, never with some of its texts.
#pragma once

#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <cstddef>
#include <vector>

#include "search/keypad_search.h"
#include "search/trie.h"
#include "support/mutex.h"
#include "support/slots.h"

namespace cfgxml::search {

/// The process-wide trie and the search over it, used only while the mutex is held. What a search
/// leaves in the table of hits is its caller's until the next search.
struct Index {
  Mutex mutex;
  Trie trie GUARDED_BY(mutex);
  KeypadSearch keypad_search GUARDED_BY(mutex);
  HitTable hits GUARDED_BY(mutex);
};
Index& the_index();

using Contacts = Slots<CONTACT_DATA_T, CFGXML_CONTACT_CAPACITY, &CONTACT_DATA_T::Id>;

template <typename Record>
Texts texts_of(const Record& record) {
  return {record.DisplayName, record.OfficeNumber, record.MobileNumber, record.OtherNumber};
}

bool add_texts(const TRIE_INFO_T& info, const Texts& texts);
void remove_texts(const TRIE_INFO_T& info, const Texts& texts);

/// Index a record (CONTACT_DATA_T or CONTACT_SUMMARY_T) under its name and numbers, and take it out
/// again: the texts must be those under which it went in. Adding gives false, and the record is not
/// in the index, when memory is out.
template <typename Record>
bool add_record(int book, Record& record) {
  return add_texts({book, &record}, texts_of(record));
}
template <typename Record>
void remove_record(int book, Record& record) {
  remove_texts({book, &record}, texts_of(record));
}

/// Writes a contact over another in its slot, in the index too; false, and nothing changed, when
/// memory is out.
bool replace_contact(CONTACT_DATA_T& slot, const CONTACT_DATA_T& contact);

/// Takes a whole book out; returns the number of strings that left.
int purge(int book);

/// Number the records of a book by their names without regard to letter case: a record's position
/// is its place in that order, of equal names the later record's the lower one; records without a
/// name stand in front and all get the last of their places. O(n log n). The list form uses room
/// that was reserved for all its records, so that a book is not changed before there is memory to
/// number it; it throws std::bad_alloc, and changes nothing, when there is not enough.
using Room = std::vector<CONTACT_SUMMARY_T*>;
void number_positions(CONTACT_DATA_LIST_T& list);
void number_positions(CONTACT_SUMMARY_T* head, Room& room);

/// Takes a used contact out of the table and the index: the later slots move down by one and the
/// last is cleared. The index ends up as if the strings of the contact and of those behind it had
/// been removed before the move, and those of the moved ones added after it, in table order.
void remove_contact(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T* contact);

/// Held while positions are written or indexed records move in memory, so that no search reads them
/// meanwhile. No call of the host or of the index while it is held.
class RecordWrites {
  const Hold<Mutex> hold_{the_index().mutex};
};

}  // namespace cfgxml::search
