#include "plain_trie.h"

#include <cstdlib>
#include <cstring>

namespace plain {
namespace {

constexpr const char* kRows[] = {"0 +",     "1",         "2abcABC", "3defDEF",
                                 "4ghiGHI", "5jklJKL",   "6mnoMNO", "7pqrsPQRS",
                                 "8tuvTUV", "9wxyzWXYZ", "*"};

const char* row_of(char key) {
  for (const char* row : kRows) {
    if (key != '+' && std::strchr(row, key) != nullptr) return row;
  }
  return nullptr;
}

template <typename T>
T* allocate() {
  return static_cast<T*>(std::malloc(sizeof(T)));
}

}  // namespace

Trie::Node* Trie::new_node(std::uint32_t key) {
  Node* node = allocate<Node>();
  *node = {key, 0, nullptr, nullptr};
  return node;
}

Trie::Trie() : root_(new_node(0)) { root_->count = 1; }

Trie::~Trie() { free_below(root_); }

void Trie::free_below(Node* node) {
  while (node->entries != nullptr) {
    TRIE_ENTRY_T* entry = node->entries;
    node->entries = entry->next;
    std::free(entry);
  }
  while (node->children != nullptr) {
    Link* link = node->children;
    node->children = link->next;
    free_below(link->node);
    std::free(link);
  }
  std::free(node);
}

Trie::Node* Trie::child(const Node* node, std::uint32_t key) {
  for (const Link* link = node->children; link != nullptr; link = link->next) {
    if (link->node->key == key) return link->node;
  }
  return nullptr;
}

void Trie::insert(const char* text, const TRIE_INFO_T& info) {
  Node* node = root_;
  for (; *text != '\0'; ++text) {
    const auto key = static_cast<unsigned char>(*text);
    Node* below = child(node, key);
    if (below == nullptr) {
      below = new_node(key);
      Link** end = &node->children;
      while (*end != nullptr) end = &(*end)->next;
      *end = allocate<Link>();
      **end = {below, nullptr};
    }
    ++below->count;
    node = below;
  }
  TRIE_ENTRY_T** end = &node->entries;
  while (*end != nullptr) end = &(*end)->next;
  *end = allocate<TRIE_ENTRY_T>();
  **end = {info, nullptr};
}

void Trie::remove_child(Node* node, const Node* child) {
  for (Link** link = &node->children; *link != nullptr; link = &(*link)->next) {
    if ((*link)->node != child) continue;
    Link* gone = *link;
    *link = gone->next;
    std::free(gone->node);
    std::free(gone);
    return;
  }
}

bool Trie::erase_below(Node* node, const char* text, const void* record) {
  if (*text == '\0') {
    for (TRIE_ENTRY_T** entry = &node->entries; *entry != nullptr; entry = &(*entry)->next) {
      if ((*entry)->info.record != record) continue;
      TRIE_ENTRY_T* gone = *entry;
      *entry = gone->next;
      std::free(gone);
      return true;
    }
    return false;
  }
  Node* below = child(node, static_cast<unsigned char>(*text));
  if (below == nullptr || !erase_below(below, text + 1, record)) return false;
  if (--below->count == 0) remove_child(node, below);
  return true;
}

void Trie::erase(const char* text, const void* record) { erase_below(root_, text, record); }

int Trie::purge_below(Node* node, int book) {
  int purged = 0;
  for (TRIE_ENTRY_T** entry = &node->entries; *entry != nullptr;) {
    if ((*entry)->info.book != book) {
      entry = &(*entry)->next;
      continue;
    }
    TRIE_ENTRY_T* gone = *entry;
    *entry = gone->next;
    std::free(gone);
    ++purged;
  }
  for (Link** link = &node->children; *link != nullptr;) {
    Node* below = (*link)->node;
    purged += purge_below(below, book);
    if (below->count == 0) {
      Link* gone = *link;
      *link = gone->next;
      std::free(below);
      std::free(gone);
    } else {
      link = &(*link)->next;
    }
  }
  node->count -= static_cast<std::uint32_t>(purged);
  return purged;
}

int Trie::purge(int book) {
  const int purged = purge_below(root_, book);
  root_->count = 1;
  return purged;
}

/// Queues the node behind `after` (nullptr: at the head) and behind those that are as busy.
void Trie::queue_by_count(Cell* after, Node* node) {
  Cell** place = after != nullptr ? &after->next : &head_;
  while (*place != nullptr && (*place)->node->count >= node->count) place = &(*place)->next;
  Cell* cell = allocate<Cell>();
  *cell = {node, *place};
  *place = cell;
  if (cell->next == nullptr) tail_ = cell;
}

void Trie::append(Node* node) {
  Cell* cell = allocate<Cell>();
  *cell = {node, nullptr};
  (tail_ != nullptr ? tail_->next : head_) = cell;
  tail_ = cell;
}

void Trie::take_head() {
  Cell* cell = head_;
  head_ = cell->next;
  if (head_ == nullptr) tail_ = nullptr;
  std::free(cell);
}

void Trie::empty_queue() {
  while (head_ != nullptr) take_head();
}

void Trie::collect(const Node* node, TRIE_RESULT_T& table) {
  for (const TRIE_ENTRY_T* entry = node->entries; entry != nullptr; entry = entry->next) {
    const std::uint32_t position = *static_cast<const std::uint32_t*>(entry->info.record);
    if (position < CFGXML_BOOK_RECORDS) {
      table.records[entry->info.book][position] = entry->info.record;
    }
  }
}

int Trie::search(const char* keys, TRIE_RESULT_T& table, bool& matched) {
  std::memset(&table, 0, sizeof table);
  matched = false;
  for (const char* key = keys; *key != '\0'; ++key) {
    const char* row = row_of(*key);
    if (row == nullptr) {
      empty_queue();
      return 0;
    }
    const bool first = key == keys;
    Cell* last = tail_;  // of the current level
    int level = 0;
    for (const Cell* cell = head_; cell != nullptr; cell = cell->next) ++level;
    for (int i = 0; i < (first ? 1 : level); ++i) {
      const Node* node = first ? root_ : head_->node;
      for (const char* character = row; *character != '\0'; ++character) {
        Node* below = child(node, static_cast<unsigned char>(*character));
        if (below != nullptr) queue_by_count(first ? head_ : last, below);
      }
      if (!first) take_head();
    }
    if (head_ == nullptr) return 0;
  }

  matched = true;
  int steps = 0;
  while (head_ != nullptr) {
    const Node* node = head_->node;
    if (node->entries != nullptr) {
      ++steps;
      collect(node, table);
      if (steps > 99) break;
    }
    for (std::uint32_t key = 32; key <= 126 && steps <= 99; ++key) {
      Node* below = child(node, key);
      if (below == nullptr) continue;
      if (below->entries != nullptr) {
        collect(below, table);
        ++steps;
      }
      append(below);
    }
    if (steps > 99) break;
    take_head();
  }
  empty_queue();
  return steps;
}

}  // namespace plain
