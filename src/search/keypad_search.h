// The keypad search over the trie.
#pragma once

#include <cfgxml/search.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "search/trie.h"

namespace cfgxml::search {

/// The table of the hits. It knows which words are set, so that few have to be cleared.
class HitTable {
 public:
  void clear();
  void put(const std::vector<const Record*>& hits);  // into the cleared table
  TRIE_RESULT_T* words() { return &words_; }

 private:
  TRIE_RESULT_T words_{};
  void** set_[512];
  std::size_t words_set_ = 0;  // with more than the list holds, any may be set
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
    Number node;
    std::uint32_t start;   // how many bytes lead to its text
    std::uint32_t weight;  // matching: the count of strings; collecting: depth of the nearest end
    std::uint32_t found;   // matching: the order in which the places of a level were found;
                           // collecting: whether it is a leaf or the first of a branch's children
  };
  enum Found : std::uint32_t { kLeaf, kChildren };
  using Front = std::vector<Reached>;

  bool match(const char* keys);
  void match_first(std::uint8_t row);
  void match_below(const Reached& place, std::uint8_t row, std::uint32_t found);
  void order_matches();

  void collect();
  void look_below(Number node, std::uint32_t start, std::uint32_t level);
  Reached reached(Number node, std::uint32_t start) const;
  void take_step(const Reached& leaf, std::uint32_t level);
  void start_next();
  void keep(const Reached& place);

  static constexpr std::uint32_t kNowhere = std::numeric_limits<std::uint32_t>::max();

  const Trie* trie_ = nullptr;
  std::vector<const Record*> hits_;
  Front front_;
  Front next_;
  Front below_;              // the first of the siblings yet to be looked at, by level of the trie
  std::uint32_t depth_ = 0;  // how many keys the front has matched
  std::uint32_t nearest_ = 0;  // of the ends below the next front
  int steps_ = 0;
};

}  // namespace cfgxml::search
