#include "search/trie.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "support/chain.h"

namespace cfgxml::search {
namespace {

/// The link to the child whose run begins with this byte, or to where it belongs.
Node** child_link(Node* parent, std::uint8_t first) {
  Node** link = &parent->first_child;
  while (*link != nullptr && (*link)->run[0] < first) link = &(*link)->next_sibling;
  return link;
}

Node* child(Node* parent, std::uint8_t first) {
  Node* node = *child_link(parent, first);
  return node != nullptr && node->run[0] == first ? node : nullptr;
}

/// How many bytes of the node's run the text begins with.
std::size_t common_length(const Node* node, const char* text) {
  std::size_t length = 0;
  while (length != node->length && node->run[length] == static_cast<std::uint8_t>(text[length])) {
    ++length;
  }
  return length;
}

bool is_collected(const std::uint8_t* run, std::size_t length) {
  return std::all_of(run, run + length, [](std::uint8_t byte) {
    return byte >= kFirstCollected && byte <= kLastCollected;
  });
}

void set_run(Node* node, const void* bytes, std::size_t length) {
  std::memcpy(node->run, bytes, length);
  node->length = static_cast<std::uint8_t>(length);
  node->collected = is_collected(node->run, length);
}

/// Works out the node's nearest end from its own entries and its children.
void refresh_nearest(Node* node) {
  node->nearest = kNowhere;
  if (!node->collected) return;
  if (node->entries != nullptr) {
    node->nearest = node->depth;
    return;
  }
  for (const Node* below = node->first_child; below != nullptr; below = below->next_sibling) {
    node->nearest = std::min(node->nearest, below->nearest);
  }
}

/// Tells the nodes above of a string that now ends at this one.
void report_end(Node* end) {
  for (Node* node = end; node->collected && node->nearest > end->depth; node = node->parent) {
    node->nearest = end->depth;
  }
}

/// Changes the counts from the node up; the root's stays 1.
void change_counts(Node* node, int by) {
  for (; node->parent != nullptr; node = node->parent) {
    node->count += static_cast<std::uint32_t>(by);
  }
}

}  // namespace

Trie::Place Trie::find(const char* text) {
  Node* node = &root_;
  while (*text != '\0') {
    node = child(node, static_cast<std::uint8_t>(*text));
    if (node == nullptr) return {};
    const std::size_t length = common_length(node, text);
    text += length;
    if (length != node->length) return *text == '\0' ? Place{node, false} : Place{};
  }
  return {node, true};
}

bool Trie::reserve(const Texts& texts, int book) {
  std::size_t nodes = 0;
  std::size_t entries = 0;
  for (const char* text : texts) {
    if (is_blank(text)) continue;
    nodes += std::strlen(text) / Node::kCapacity + 2;  // the text's, and one of a split
    ++entries;
  }
  try {
    nodes_.reserve(nodes);
    pool_of(book).reserve(entries);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

bool Trie::insert(const Texts& texts, const TRIE_INFO_T& info) {
  if (!reserve(texts, info.book)) return false;
  for (const char* text : texts) {
    if (!is_blank(text)) insert_reserved(text, info);
  }
  return true;
}

void Trie::insert_reserved(const char* text, const TRIE_INFO_T& info) {
  rooted_ = true;
  Node* node = reach(text);
  append(node, info);
  change_counts(node, 1);
  report_end(node);
}

/// The node at which the text ends, made if there is none.
Node* Trie::reach(const char* text) {
  Node* node = &root_;
  while (*text != '\0') {
    const auto first = static_cast<std::uint8_t>(*text);
    Node** link = child_link(node, first);
    if (*link == nullptr || (*link)->run[0] != first) {
      node = add_child(node, link, text);
      text += node->length;
      continue;
    }
    const std::size_t length = common_length(*link, text);
    if (length != (*link)->length) split(link, length);
    node = *link;
    text += length;
  }
  return node;
}

/// Puts a child in front of the link's node, with as much of the text as fits.
Node* Trie::add_child(Node* parent, Node** link, const char* text) {
  Node* node = nodes_.take();
  set_run(node, text, strnlen(text, Node::kCapacity));
  node->parent = parent;
  node->depth = parent->depth + node->length;
  node->next_sibling = *link;
  *link = node;
  return node;
}

/// Cuts the run of the link's node: a new node in its place takes the first bytes and has the old
/// one, which keeps its entries and children, as its only child.
void Trie::split(Node** link, std::size_t length) {
  Node* lower = *link;
  Node* upper = nodes_.take();
  set_run(upper, lower->run, length);
  upper->parent = lower->parent;
  upper->depth = lower->start() + upper->length;
  upper->count = lower->count;
  upper->next_sibling = lower->next_sibling;
  upper->first_child = lower;
  *link = upper;

  std::uint8_t rest[Node::kCapacity];
  std::memcpy(rest, lower->run + length, lower->length - length);
  set_run(lower, rest, lower->length - length);
  lower->parent = upper;
  lower->next_sibling = nullptr;
  refresh_nearest(lower);
  refresh_nearest(upper);
}

void Trie::append(Node* node, const TRIE_INFO_T& info) {
  Entry* entry = pool_of(info.book).take();
  entry->info = info;
  entry->node = node;
  if (node->entries == nullptr) {
    node->entries = entry;
  } else {
    node->entries->tail->next = entry;
  }
  node->entries->tail = entry;
}

void Trie::erase(const Texts& texts, const void* record) {
  for (const char* text : texts) {
    if (!is_blank(text)) erase_text(text, record);
  }
}

void Trie::erase_text(const char* text, const void* record) {
  const Place place = find(text);
  if (place.node == nullptr || !place.at_end) return;
  Entry* previous = nullptr;
  for (Entry* entry = place.node->entries; entry != nullptr; entry = next_of(entry)) {
    if (entry->info.record == record) {
      remove(previous, entry);
      change_counts(place.node, -1);
      tidy(place.node);
      return;
    }
    previous = entry;
  }
}

int Trie::purge(int book) {
  int purged = 0;
  // The first entry met of a node takes the node's others with it.
  for_each_entry(book, [&](const Entry& entry) { purged += purge(entry.node, book); });
  return purged;
}

int Trie::purge(Node* node, int book) {
  int purged = 0;
  Entry* previous = nullptr;
  for (Entry* entry = node->entries; entry != nullptr;) {
    Entry* next = next_of(entry);
    if (entry->info.book == book) {
      remove(previous, entry);
      ++purged;
    } else {
      previous = entry;
    }
    entry = next;
  }
  change_counts(node, -purged);
  tidy(node);
  return purged;
}

/// Takes an entry out of its node's list; previous is the one before it, or nullptr.
void Trie::remove(Entry* previous, Entry* entry) {
  Node* node = entry->node;
  Entry* next = next_of(entry);
  if (previous == nullptr) {
    if (next != nullptr) next->tail = entry->tail;
    node->entries = next;
  } else {
    if (next == nullptr) node->entries->tail = previous;
    previous->next = next;
  }
  pool_of(entry->info.book).give_back(entry);
}

/// Sets the nodes from this one up right after entries of this one went: those that no string
/// passes any more go, and one that no longer branches is folded.
void Trie::tidy(Node* node) {
  while (node != &root_) {
    Node* parent = node->parent;
    if (node->count == 0) {
      *child_link(parent, node->run[0]) = node->next_sibling;
      nodes_.give_back(node);
    } else {
      const std::uint32_t nearest = node->nearest;
      node = fold(node);
      refresh_nearest(node);
      if (node->nearest == nearest) return;  // nothing changes further up
    }
    node = parent;
  }
}

/// Lets the only child of a node without entries take the node's place, if one run has room for
/// both; the child keeps its address, so its entries and children stay as they are. Returns the
/// node that stands there.
Node* Trie::fold(Node* node) {
  Node* only = node->first_child;
  if (node->entries != nullptr || only->next_sibling != nullptr) return node;
  if (node->length + only->length > static_cast<int>(Node::kCapacity)) return node;

  std::uint8_t run[Node::kCapacity];
  std::memcpy(run, node->run, node->length);
  std::memcpy(run + node->length, only->run, only->length);
  set_run(only, run, node->length + only->length);
  *child_link(node->parent, node->run[0]) = only;
  only->parent = node->parent;
  only->next_sibling = node->next_sibling;
  nodes_.give_back(node);
  return only;
}

void Trie::move_to_back(Node* node, RecordRange records) {
  TRIE_ENTRY_T* others = nullptr;
  TRIE_ENTRY_T* moved = nullptr;
  TRIE_ENTRY_T** others_end = &others;
  TRIE_ENTRY_T** moved_end = &moved;
  for (TRIE_ENTRY_T* entry = node->entries; entry != nullptr; entry = entry->next) {
    TRIE_ENTRY_T**& end = records.holds(*entry) ? moved_end : others_end;
    *end = entry;
    end = &entry->next;
  }
  *moved_end = nullptr;
  *others_end = sort_chain(moved, [](const TRIE_ENTRY_T& left, const TRIE_ENTRY_T& right) {
    return std::less<>()(left.info.record, right.info.record);
  });

  node->entries = static_cast<Entry*>(others);
  Entry* tail = node->entries;
  while (tail->next != nullptr) tail = next_of(tail);
  node->entries->tail = tail;
}

Trie::Entries& Trie::pool_of(int book) {
  return entries_[book >= 0 && book < CFGXML_BOOK_COUNT ? book : CFGXML_BOOK_COUNT];
}

// Byte by byte from the end: the runs are short, and most texts that differ do so there.
bool spells(const Node* node, const char* text, std::size_t capacity) {
  if (node->depth >= capacity || text[node->depth] != '\0') return false;
  const char* byte = text + node->depth;
  for (; node->parent != nullptr; node = node->parent) {
    for (std::size_t i = node->length; i-- != 0;) {
      if (static_cast<std::uint8_t>(*--byte) != node->run[i]) return false;
    }
  }
  return true;
}

}  // namespace cfgxml::search
