// What holds of the phone's data after any calls in any order. A check gives the first rule that is
// broken and the record that breaks it, or "" when all hold.
#pragma once

#include <cfgxml/history.h>
#include <cfgxml/phonebook.h>
#include <cfgxml/search.h>

#include <array>
#include <string>

namespace phone_test {

/// The lists behind the books of the search, by book number; nullptr for one that is not indexed.
/// The local contacts' place, 0, is not used.
using Books = std::array<const CONTACT_SUMMARY_T*, CFGXML_BOOK_COUNT>;

/// Whether two records may have one id, as in a table that was read from a file which says so.
enum class Ids { kUnique, kAny };

/// The tables are packed and clear after their last record, texts terminated, ids unique; group
/// names unique; display names unique over contacts and blacklist, but for records without a name
/// and those called "(Empty)" in its place.
std::string broken_phonebook(const CONTACT_DATA_LIST_T& contacts,
                             const BLACK_DATA_LIST_T& blacklist, Ids ids = Ids::kUnique);
std::string broken_history(const HISTORY_DATA_LIST& history, Ids ids = Ids::kUnique);

/// True when a contact has no name, or "(Empty)" in its place: it got its position before that.
bool has_nameless(const CONTACT_DATA_LIST_T& contacts);

/// The positions are a permutation of the places, in the order of the names without regard to
/// letter case. It does not hold while there are nameless contacts, nor after a bulk delete or a
/// load, until the local book is indexed afresh.
std::string broken_positions(const CONTACT_DATA_LIST_T& contacts);

/// Every contact's group exists, or is "Default". It holds after a load and after a save.
std::string broken_membership(const CONTACT_DATA_LIST_T& contacts);

/// The index holds exactly what a fresh one would: each text of each record as often as its record
/// has it, nothing else. The text "(Empty)" of a contact may be missing: it was no text when the
/// contact was indexed. Holds as the positions do, except for nameless contacts. After a load of
/// the index for which there was too little memory, records may be missing in it, each as a whole.
std::string broken_index(const CONTACT_DATA_LIST_T& contacts, const Books& books,
                         bool records_may_miss = false);

/// Indexes the local book afresh: keypad searches take the same steps to the same records before
/// and after. Holds as broken_positions does.
std::string broken_by_reload();

/// The lists that live in files alone: ids are unique, texts terminated, and unique where the list
/// promises it, and no list is longer than it may be.
std::string broken_rules();
std::string broken_messages();

}  // namespace phone_test
