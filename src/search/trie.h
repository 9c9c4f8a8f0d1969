// The tree of the indexed strings; cells.h describes its layout.
#pragma once

#include <cfgxml/search.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "search/cells.h"

namespace cfgxml::search {

/// The tag of a node's link down: how many bytes lie between the start of its text and the nearest
/// end that is reached through collected bytes alone. Below a branch it may lie farther than told.
inline constexpr std::uint32_t kFarthest = 254;
inline constexpr std::uint32_t kNever = 255;

inline constexpr std::uint32_t kAllBooks = (1U << CFGXML_BOOK_COUNT) - 1;  // in a branch

/// The texts under which a record is indexed; empty ones and nullptr are not.
inline constexpr std::size_t kTexts = 4;
using Texts = std::array<const char*, kTexts>;

inline bool is_blank(const char* text) { return text == nullptr || *text == '\0'; }

/// The records that lie from first on and before end.
struct RecordRange {
  const void* first;
  const void* end;

  bool holds(const void* record) const {
    return !std::less<>()(record, first) && std::less<>()(record, end);
  }
};

/// Not safe for use by several threads at once.
class Trie {
 public:
  /// How many strings begin with a text, and the leaf of those that end with it, if any.
  struct Place {
    std::uint32_t count = 0;
    Number leaf = kNone;
  };

  Trie() = default;
  Trie(const Trie&) = delete;
  Trie& operator=(const Trie&) = delete;

  /// Makes sure that there is memory to insert these texts of a book next; false when it is out.
  bool reserve(const Texts& texts, int book);

  /// Adds the texts of a record; false, and none of them added, when memory is out.
  bool insert(const Texts& texts, const TRIE_INFO_T& info);

  /// Removes, for each of the texts, the oldest entry that belongs to the record, if there is one.
  void erase(const Texts& texts, const void* record);

  /// Removes every entry of a book; returns how many there were.
  int purge(int book);

  /// Gives back the memory that no string needs, reserved memory too.
  void trim() { cells_.trim(); }

  /// False until the first string was inserted, then true for good.
  bool rooted() const { return rooted_; }
  Place find(const char* text);

  /// The leaf's entries as the list that callers may read, kept until they change. Throws
  /// std::bad_alloc.
  TRIE_ENTRY_T* list(Number leaf);

  const Cell& operator[](Number number) const { return cells_[number]; }
  Number top(char first) const { return roots_[static_cast<std::uint8_t>(first)].to; }

  /// How many strings pass through the node or end there.
  std::uint32_t count(const Cell& node) const;

  /// Visits the records that share the leaf's string, oldest first.
  template <typename Visit>
  void for_each_record(const Cell& leaf, Visit visit) const {
    for_each_sharer(leaf, [&](Number number) { visit(cells_[number].record); });
  }

  /// Visits the leaves that may have an entry of the book. Meanwhile nothing may change but the
  /// order of entries, and spells tells whether a text is the visited leaf's.
  template <typename Visit>
  void for_each_leaf(int book, Visit visit) {
    walk<false>(book, [&](Cell& leaf) { visit(leaf); });
  }
  bool spells(const char* text) const;

  /// Puts the entries of these records after the leaf's others, in the order of their addresses.
  void move_to_back(Cell& leaf, RecordRange records);

  /// Moves the book's records in this range to addresses that are lower by so many bytes.
  void lower(int book, RecordRange records, std::size_t bytes);

 private:
  template <typename Visit>
  void for_each_sharer(const Cell& leaf, Visit visit) const;
  template <bool kChanging, typename Visit>
  void walk(int book, Visit visit);

  void step(Link*& link) { link = &cells_[link->to].node.next; }
  Link* child_link(Cell& branch, std::uint8_t first);
  bool begins(const Link& link, std::uint8_t first) const;
  std::uint32_t books(const Cell& node) const;
  void refresh(Cell& branch);

  void insert_reserved(const char* text, const TRIE_INFO_T& info);
  Number record_of(const TRIE_INFO_T& info);
  Cell& add_node(Link& link, Kind kind, const void* text, std::size_t length);
  void add_sharer(Cell& leaf, Number record);
  Cell& split(Link& link, std::size_t length);

  void clear();
  void erase_text(const char* text, const void* record);
  template <typename Keep>
  void keep_sharers(Cell& leaf, Keep keep);
  void write_sharers(Cell& leaf);
  void drop_record(Number record);
  bool settle(Link& link, std::size_t distance = 0);
  bool join(Link& link);
  void unlink(Link& link);

  bool rooted_ = false;
  std::uint32_t strings_ = 0;
  std::array<std::uint32_t, kNodes> book_strings_{};  // of each book, and of all other books
  Number last_record_ = kNone;                        // the one that was taken last, while it lives
  std::size_t most_sharers_ = 0;
  std::array<Link, 256> roots_{};
  Cells cells_;
  std::map<const Cell*, std::unique_ptr<TRIE_ENTRY_T[]>> lists_;  // by leaf

  // Their room is reserved while strings are inserted: removing them never fails.
  std::vector<Link*> path_;      // to the nodes from the root down to the last one looked at
  std::vector<Number> sharers_;  // of a leaf
};

template <typename Visit>
void Trie::for_each_sharer(const Cell& leaf, Visit visit) const {
  const Number last = leaf.node.down.to;
  if (leaf.node.kind() == Kind::kLeaf) return visit(last);
  Number number = last;
  do {
    number = cells_[number].sharer.next.to;
    visit(cells_[number].sharer.record.to);
  } while (number != last);
}

/// Goes through the branches of a book without recursion. With changes, a leaf that its visit left
/// without entries goes, and the branches above are set right.
template <bool kChanging, typename Visit>
void Trie::walk(int book, Visit visit) {
  const std::uint32_t bit = 1U << static_cast<unsigned>(book);
  for (Link& root : roots_) {
    if (root.to == kNone) continue;
    path_.assign(1, &root);
    while (!path_.empty()) {
      Link*& link = path_.back();
      if (link->to == kNone) {  // after the last child
        path_.pop_back();
        if (path_.empty() || (kChanging && !settle(*path_.back()))) continue;
      } else if (Cell& cell = cells_[link->to]; cell.node.kind() != Kind::kBranch) {
        visit(cell);
        if (kChanging && cell.node.down.to == kNone) {
          unlink(*link);
          continue;
        }
      } else if ((cell.branch.books & bit) != 0) {
        if (kChanging) cell.branch.books = cell.branch.books & ~bit & kAllBooks;
        path_.push_back(&cell.node.down);
        continue;
      }
      step(path_.back());
    }
  }
}

}  // namespace cfgxml::search
