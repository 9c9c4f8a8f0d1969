// Taking one contact out of the table without indexing all those behind it again.
#include <cstring>

#include "search/index.h"

namespace cfgxml::search {
namespace {

/// The deleted contact and the used ones behind it, as positions in the table.
struct Run {
  CONTACT_DATA_T* deleted;
  CONTACT_DATA_T* end;

  RecordRange all() const { return {deleted, end}; }
  RecordRange moving() const { return {deleted + 1, end}; }
};

/// Moves the later slots down over the deleted one. The host's own move is not used: a search waits
/// for the index meanwhile, and no call of the host may be made then.
void close_up(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T* deleted) {
  CONTACT_DATA_T* last = list.Contacts + CFGXML_CONTACT_CAPACITY - 1;
  std::memmove(deleted, deleted + 1, static_cast<std::size_t>(last - deleted) * sizeof *deleted);
  std::memset(last, 0, sizeof *last);
}

/// Checks that the index holds exactly the texts of the contacts, and each as often as they do. A
/// host that changes its table by itself, and the bulk deletes, leave the two out of step.
class StepCheck {
 public:
  StepCheck(const Trie& trie, const Run& run) : trie_(trie), run_(run) {}

  /// Looks at a string of the local book, in a visit of its leaf.
  void see(const Cell& leaf) {
    bool any_local = false;
    bool any_stranger = false;  // an entry that another book has of the contacts
    bool all_claimed = true;
    trie_.for_each_record(leaf, [&](const Record& record) {
      const bool local = record.book == CFGXML_BOOK_LOCAL;
      any_local = any_local || local;
      if (!run_.all().holds(record.record)) return;
      any_stranger = any_stranger || !local;
      all_claimed = all_claimed && (!local || claim(record.record));
    });
    if (!all_claimed || (any_local && any_stranger)) in_step_ = false;
  }

  /// To be asked when every entry was seen.
  bool in_step() const {
    if (!in_step_) return false;
    for (const CONTACT_DATA_T* contact = run_.deleted; contact != run_.end; ++contact) {
      if (claimed_[contact - run_.deleted] != texts_present(*contact)) return false;
    }
    return true;
  }

 private:
  using TextSet = std::uint8_t;  // bit t stands for the t-th text of a contact

  static TextSet texts_present(const CONTACT_DATA_T& contact) {
    TextSet present = 0;
    TextSet bit = 1;
    for (const char* text : texts_of(contact)) {
      if (*text != '\0') present |= bit;
      bit = static_cast<TextSet>(bit << 1);
    }
    return present;
  }

  /// Finds the text of the record for which an entry of the visited leaf stands.
  bool claim(const void* record) {
    const auto offset = static_cast<std::size_t>(static_cast<const char*>(record) -
                                                 reinterpret_cast<const char*>(run_.deleted));
    if (offset % sizeof(CONTACT_DATA_T) != 0) return false;
    const std::size_t slot = offset / sizeof(CONTACT_DATA_T);
    TextSet bit = 1;
    for (const char* text : texts_of(run_.deleted[slot])) {
      if ((claimed_[slot] & bit) == 0 && trie_.spells(text)) {
        claimed_[slot] |= bit;
        return true;
      }
      bit = static_cast<TextSet>(bit << 1);
    }
    return false;
  }

  const Trie& trie_;
  const Run& run_;
  bool in_step_ = true;
  TextSet claimed_[CFGXML_CONTACT_CAPACITY] = {};
};

/// The contacts' entries stay where they are, at the new addresses; where several share a string,
/// those that move go to the end, as if they had been removed and added.
void lower_addresses(Trie& trie, const Run& run) {
  trie.for_each_leaf(CFGXML_BOOK_LOCAL, [&](Cell& leaf) { trie.move_to_back(leaf, run.moving()); });
  trie.lower(CFGXML_BOOK_LOCAL, run.moving(), sizeof(CONTACT_DATA_T));
}

}  // namespace

void remove_contact(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T* contact) {
  const Hold hold(the_index().mutex);
  Trie& trie = the_index().trie;
  const Run run{contact, Contacts(list.Contacts).end()};
  StepCheck check(trie, run);
  trie.for_each_leaf(CFGXML_BOOK_LOCAL, [&](const Cell& leaf) { check.see(leaf); });

  if (check.in_step()) {
    trie.erase(texts_of(*contact), contact);
    lower_addresses(trie, run);
    close_up(list, contact);
    trie.trim();
    return;
  }
  for (CONTACT_DATA_T* slot = run.deleted; slot != run.end; ++slot) {
    trie.erase(texts_of(*slot), slot);
  }
  close_up(list, contact);
  // The index was out of step before; without memory a contact is missing in it as a whole.
  for (CONTACT_DATA_T* slot = run.deleted; slot->Id >= 1; ++slot) {
    trie.insert(texts_of(*slot), {CFGXML_BOOK_LOCAL, slot});
  }
  trie.trim();
}

}  // namespace cfgxml::search
