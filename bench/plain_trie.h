// The plain way to index strings: a character trie with one allocation per node, child link, entry
// and queue cell, and 95 child look-ups for each node that a search collects.
#pragma once

#include <cfgxml/search.h>

#include <cstdint>

namespace plain {

class Trie {
 public:
  Trie();
  ~Trie();
  Trie(const Trie&) = delete;
  Trie& operator=(const Trie&) = delete;

  void insert(const char* text, const TRIE_INFO_T& info);
  void erase(const char* text, const void* record);
  int purge(int book);

  /// As CfgTrieSearchVague.
  int search(const char* keys, TRIE_RESULT_T& table, bool& matched);

 private:
  struct Link;
  struct Node {
    std::uint32_t key;
    std::uint32_t count;
    TRIE_ENTRY_T* entries;
    Link* children;
  };
  struct Link {
    Node* node;
    Link* next;
  };
  struct Cell {
    Node* node;
    Cell* next;
  };

  static Node* new_node(std::uint32_t key);
  static Node* child(const Node* node, std::uint32_t key);
  static bool erase_below(Node* node, const char* text, const void* record);
  static void remove_child(Node* node, const Node* child);
  static int purge_below(Node* node, int book);
  static void free_below(Node* node);
  static void collect(const Node* node, TRIE_RESULT_T& table);

  void queue_by_count(Cell* after, Node* node);
  void append(Node* node);
  void take_head();
  void empty_queue();

  Node* root_;
  Cell* head_ = nullptr;
  Cell* tail_ = nullptr;
};

}  // namespace plain
