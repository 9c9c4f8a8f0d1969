// Taking one contact out of the table without indexing all those behind it again.
#include <cstring>

#include "search/index.h"

namespace cfgxml::search {
namespace {

constexpr std::size_t kTextCapacity = sizeof(CONTACT_DATA_T::DisplayName);

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

/// True for one entry of each list that contacts share with each other or with other books: the
/// first of the local book.
bool speaks_for_shared_list(const Entry& entry) {
  const Entry* first = entry.node->entries;
  if (first->next == nullptr) return false;
  while (first->info.book != CFGXML_BOOK_LOCAL) first = next_of(first);
  return first == &entry;
}

/// Checks that the index holds exactly the texts of the contacts, and each as often as they do. A
/// host that changes its table by itself, and the bulk deletes, leave the two out of step.
class StepCheck {
 public:
  explicit StepCheck(const Run& run) : run_(run) {}

  /// Looks at an entry of the local book.
  void see(const Entry& entry) {
    if (speaks_for_shared_list(entry) && has_strangers(*entry.node)) in_step_ = false;
    if (in_step_ && run_.all().holds(entry)) in_step_ = claim(entry);
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

  /// Finds the text for which the entry stands.
  bool claim(const Entry& entry) {
    const auto offset = static_cast<std::size_t>(static_cast<const char*>(entry.info.record) -
                                                 reinterpret_cast<const char*>(run_.deleted));
    if (offset % sizeof(CONTACT_DATA_T) != 0) return false;
    const std::size_t slot = offset / sizeof(CONTACT_DATA_T);
    TextSet bit = 1;
    for (const char* text : texts_of(run_.deleted[slot])) {
      if ((claimed_[slot] & bit) == 0 && spells(entry.node, text, kTextCapacity)) {
        claimed_[slot] |= bit;
        return true;
      }
      bit = static_cast<TextSet>(bit << 1);
    }
    return false;
  }

  /// True when another book has entries of the contacts.
  bool has_strangers(const Node& node) const {
    for (const Entry* entry = node.entries; entry != nullptr; entry = next_of(entry)) {
      if (entry->info.book != CFGXML_BOOK_LOCAL && run_.all().holds(*entry)) return true;
    }
    return false;
  }

  const Run& run_;
  bool in_step_ = true;
  TextSet claimed_[CFGXML_CONTACT_CAPACITY] = {};
};

/// The contacts' entries stay where they are, at the new addresses; where several share a list,
/// those that move go to its end, as if they had been removed and added.
void lower_addresses(Trie& trie, const Run& run) {
  trie.for_each_entry(CFGXML_BOOK_LOCAL, [&](Entry& entry) {
    if (speaks_for_shared_list(entry)) Trie::move_to_back(entry.node, run.moving());
  });
  trie.for_each_entry(CFGXML_BOOK_LOCAL, [&](Entry& entry) {
    if (run.moving().holds(entry)) {
      entry.info.record = static_cast<CONTACT_DATA_T*>(entry.info.record) - 1;
    }
  });
}

}  // namespace

void remove_contact(CONTACT_DATA_LIST_T& list, CONTACT_DATA_T* contact) {
  const Hold hold(the_index().mutex);
  Trie& trie = the_index().trie;
  const Run run{contact, Contacts(list.Contacts).end()};
  StepCheck check(run);
  trie.for_each_entry(CFGXML_BOOK_LOCAL, [&](const Entry& entry) { check.see(entry); });

  if (check.in_step()) {
    trie.erase(texts_of(*contact), contact);
    lower_addresses(trie, run);
    close_up(list, contact);
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
}

}  // namespace cfgxml::search
