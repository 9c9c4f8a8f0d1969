// The keypad search over the trie.
#pragma once

#include <cfgxml/search.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "search/trie.h"

namespace cfgxml::search {

/// The one table of hits, which callers read. It knows which words a search has set, so that the
/// next one need not clear all 6000.
class HitTable {
 public:
  void clear();
  void put(const TRIE_INFO_T& hit, std::uint32_t position);
  TRIE_RESULT_T* words() { return &words_; }

 private:
  TRIE_RESULT_T words_{};
  std::array<void**, 512> set_{};
  std::size_t set_count_ = 0;  // with more than set_ holds, any word may be set
};

/// Works out one search after the other; what it needs for one is kept for the next, so that a
/// search allocates nothing once its arrays have grown.
class KeypadSearch {
 public:
  /// Clears the table and puts the hits into it. Returns the number of collection steps, at most
  /// kMostSteps, or kNoMatch when a character is no key or nothing begins with what the keys stand
  /// for. May throw std::bad_alloc.
  int run(const Trie& trie, const char* keys, HitTable& table);

  static constexpr int kMostSteps = 100;
  static constexpr int kNoMatch = -1;

 private:
  /// A node that the walk has reached but not passed.
  struct Reached {
    const Node* node;
    std::uint32_t weight;  // matching: the count of strings; collecting: depth of the nearest end
    std::uint32_t found;   // matching: the order in which the places of a level were found
  };
  using Front = std::vector<Reached>;

  bool match(const Node& root, const char* keys);
  void match_below(const Node* node, std::uint8_t row, std::uint32_t found);
  void order_matches();

  void collect();
  void collect_below(const Node* top, std::uint32_t level);
  void start_next();
  void keep(const Reached& branch);
  void take_step(const Node* node);

  HitTable* table_ = nullptr;
  Front front_;
  Front next_;
  std::uint32_t depth_ = 0;    // how many keys the front has matched
  std::uint32_t nearest_ = 0;  // of the ends below the next front
  int steps_ = 0;
};

}  // namespace cfgxml::search
