#include "search/keypad_search.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "search/keypad.h"

namespace cfgxml::search {
namespace {

/// The first node behind everything below this one, as far as it is below the top; or nullptr.
const Node* next_branch(const Node* node, const Node* top) {
  while (node != top && node->next_sibling == nullptr) node = node->parent;
  return node != top ? node->next_sibling : nullptr;
}

}  // namespace

void HitTable::clear() {
  if (set_count_ > set_.size()) {
    std::memset(&words_, 0, sizeof words_);
  } else {
    for (std::size_t i = 0; i != set_count_; ++i) *set_[i] = nullptr;
  }
  set_count_ = 0;
}

void HitTable::put(const TRIE_INFO_T& hit, std::uint32_t position) {
  void** word = &words_.records[hit.book][position];
  *word = hit.record;
  if (set_count_ < set_.size()) set_[set_count_] = word;
  ++set_count_;
}

int KeypadSearch::run(const Trie& trie, const char* keys, HitTable& table) {
  table.clear();
  if (*keys == '\0') return 0;
  if (!match(trie.root(), keys)) return kNoMatch;
  table_ = &table;
  collect();
  return steps_;
}

/// Leaves in front_ the places that the keys lead to, in the order in which they are collected.
bool KeypadSearch::match(const Node& root, const char* keys) {
  front_.assign(1, {&root, 0, 0});
  for (depth_ = 0; keys[depth_] != '\0'; ++depth_) {
    const std::uint8_t row = typed_row(keys[depth_]);
    if (row == kNoRow) return false;
    next_.clear();
    std::uint32_t found = 0;
    for (const Reached& place : front_) {
      match_below(place.node, row, found);
      found += kLongestRow;
    }
    std::swap(front_, next_);
    if (front_.empty()) return false;
    order_matches();
  }
  return true;
}

/// Finds the places one byte below this node's that the row matches; found is the number of the
/// first.
void KeypadSearch::match_below(const Node* node, std::uint8_t row, std::uint32_t found) {
  const auto try_place = [&](const Node* below, std::uint8_t byte) {
    const KeypadPlace key = kKeypad[byte];
    if (key.row == row) next_.push_back({below, below->count, found + key.rank});
  };
  if (node->depth > depth_) {  // within the node's run
    try_place(node, node->run[depth_ - node->start()]);
    return;
  }
  for (const Node* child = node->first_child; child != nullptr; child = child->next_sibling) {
    try_place(child, child->run[0]);
  }
}

/// Busy places come first, those with equally many strings in the order in which they were found.
/// Of the places of the first key the one found first stays first however busy it is.
void KeypadSearch::order_matches() {
  const auto sooner = [](const Reached& a, const Reached& b) { return a.found < b.found; };
  const auto busier = [](const Reached& a, const Reached& b) {
    return a.weight != b.weight ? a.weight > b.weight : a.found < b.found;
  };
  auto rest = front_.begin();
  if (depth_ == 0) {
    std::iter_swap(rest, std::min_element(front_.begin(), front_.end(), sooner));
    ++rest;
  }
  std::sort(rest, front_.end(), busier);
}

/// Goes down from the front level by level. A string counts a step at the level above its end,
/// where it is found, and one at its own, where its turn comes; the strings that are no longer than
/// the keys have their turn alone. A branch whose nearest end lies deeper is kept as it is, and
/// levels at which there is nothing to find are left out: both leave the order as it would be.
void KeypadSearch::collect() {
  steps_ = 0;
  start_next();
  for (const Reached& place : front_) keep({place.node, place.node->nearest, 0});

  std::uint32_t level = depth_;
  while (!next_.empty() && steps_ < kMostSteps) {
    level = std::max(level, nearest_ - 1);
    std::swap(front_, next_);
    start_next();
    for (const Reached& branch : front_) {
      if (branch.weight > level + 1) {
        keep(branch);
      } else {
        collect_below(branch.node, level);
      }
      if (steps_ == kMostSteps) return;
    }
    ++level;
  }
}

/// Takes the steps of one level in the branch of the top node, and keeps what remains below it.
void KeypadSearch::collect_below(const Node* top, std::uint32_t level) {
  const Node* node = top;
  while (node != nullptr && steps_ < kMostSteps) {
    const bool due = node->nearest <= level + 1;
    if (due && node->entries != nullptr) take_step(node);
    if (due && node->depth <= level) {  // its own level: it makes way for its children
      node = node->first_child != nullptr ? node->first_child : next_branch(node, top);
    } else {
      keep({node, node->nearest, 0});
      node = next_branch(node, top);
    }
  }
}

void KeypadSearch::start_next() {
  next_.clear();
  nearest_ = kNowhere;
}

void KeypadSearch::keep(const Reached& branch) {
  if (branch.weight == kNowhere) return;
  next_.push_back(branch);
  nearest_ = std::min(nearest_, branch.weight);
}

/// Puts the records of a string into their places.
void KeypadSearch::take_step(const Node* node) {
  ++steps_;
  for (const Entry* entry = node->entries; entry != nullptr; entry = next_of(entry)) {
    const TRIE_INFO_T& info = entry->info;
    if (info.book < 0 || info.book >= CFGXML_BOOK_COUNT || info.record == nullptr) continue;
    const std::uint32_t position = *static_cast<const std::uint32_t*>(info.record);
    if (position < CFGXML_BOOK_RECORDS) table_->put(info, position);
  }
}

}  // namespace cfgxml::search
