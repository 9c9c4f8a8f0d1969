// The tree of the indexed strings. It is a character trie whose chains are folded: a node stands
// for a run of bytes that every string below it shares, so that a step down skips what cannot
// branch. A prefix that ends inside a run has the count of the run's node and no entries.
#pragma once

#include <cfgxml/search.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>

#include "search/block_pool.h"

namespace cfgxml::search {

struct Node;

/// One indexed string of one record, in the list that callers may read, and what only the trie
/// knows of it.
struct Entry : TRIE_ENTRY_T {
  Node* node = nullptr;   // where the string ends; nullptr while the cell is free
  Entry* tail = nullptr;  // in the first entry of a list: the last one
};

/// The bytes that a search collects below what the keys match; names go on in others.
inline constexpr std::uint8_t kFirstCollected = 32;
inline constexpr std::uint8_t kLastCollected = 126;

/// Where no string ends.
inline constexpr std::uint32_t kNowhere = std::numeric_limits<std::uint32_t>::max();

/// A run of bytes, from the end of the parent's run on.
struct Node {
  static constexpr std::size_t kCapacity = 18;  // fills a cache line of 64 bytes

  Node* parent = nullptr;
  Node* first_child = nullptr;       // in ascending order of the first byte
  Node* next_sibling = nullptr;      // the free list's link in a free node
  Entry* entries = nullptr;          // the strings that end with this run, oldest first
  std::uint32_t count = 0;           // strings that pass through or end here
  std::uint32_t depth = 0;           // bytes from the root to the end of the run
  std::uint32_t nearest = kNowhere;  // depth of the nearest end from here down that is reached
                                     // through collected bytes alone, those of the run included
  std::uint8_t length = 0;
  bool collected = false;  // the run consists of collected bytes
  std::uint8_t run[kCapacity] = {};

  std::uint32_t start() const { return depth - length; }
};

/// The texts under which a record is indexed; empty ones and nullptr are not.
inline constexpr std::size_t kTexts = 4;
using Texts = std::array<const char*, kTexts>;

inline bool is_blank(const char* text) { return text == nullptr || *text == '\0'; }

/// The records that lie from first on and in front of end.
struct RecordRange {
  const void* first;
  const void* end;

  bool holds(const TRIE_ENTRY_T& entry) const {
    return !std::less<>()(entry.info.record, first) && std::less<>()(entry.info.record, end);
  }
};

/// Not safe for use by several threads at once.
class Trie {
 public:
  /// How a string or prefix stands in the trie.
  struct Place {
    Node* node = nullptr;  // nullptr when no indexed string begins so
    bool at_end = false;   // of the node's run
  };

  Trie() { root_.count = 1; }
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

  /// Puts the node's entries of these records behind its others, in the order of their addresses.
  static void move_to_back(Node* node, RecordRange records);

  /// False until the first string was inserted, then true for good.
  bool rooted() const { return rooted_; }
  const Node& root() const { return root_; }
  Place find(const char* text);

  /// Visits the entries of a book in no order; the visit may remove entries, but not add any.
  template <typename Visit>
  void for_each_entry(int book, Visit visit) {
    pool_of(book).for_each([&](Entry& entry) {
      if (entry.node != nullptr && entry.info.book == book) visit(entry);
    });
  }

 private:
  using Nodes = BlockPool<Node, &Node::next_sibling>;
  using Entries = BlockPool<Entry, &Entry::next>;
  static constexpr int kPools = CFGXML_BOOK_COUNT + 1;  // the last one for all other book numbers

  Entries& pool_of(int book);

  void insert_reserved(const char* text, const TRIE_INFO_T& info);
  void erase_text(const char* text, const void* record);
  Node* reach(const char* text);
  Node* add_child(Node* parent, Node** link, const char* text);
  void split(Node** link, std::size_t length);
  void append(Node* node, const TRIE_INFO_T& info);

  int purge(Node* node, int book);
  void remove(Entry* previous, Entry* entry);
  void tidy(Node* node);
  Node* fold(Node* node);

  Node root_;
  bool rooted_ = false;
  Nodes nodes_;
  Entries entries_[kPools];
};

/// The next entry of a node's list.
inline Entry* next_of(const Entry* entry) { return static_cast<Entry*>(entry->next); }

/// True when the node's path is exactly this text, which has room for at least `capacity` bytes.
bool spells(const Node* node, const char* text, std::size_t capacity);

}  // namespace cfgxml::search
