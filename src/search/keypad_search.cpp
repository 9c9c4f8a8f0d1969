#include "search/keypad_search.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "search/keypad.h"

namespace cfgxml::search {

void HitTable::clear() {
  if (words_set_ > std::size(set_)) {
    std::memset(&words_, 0, sizeof words_);
  } else {
    for (std::size_t i = 0; i != words_set_; ++i) *set_[i] = nullptr;
  }
  words_set_ = 0;
}

/// Puts records into their places. They were gathered before: so their memory is read side by side.
void HitTable::put(const std::vector<const Record*>& hits) {
  std::size_t words_set = 0;
  for (const Record* hit : hits) {
    const auto book = static_cast<std::uint32_t>(hit->book);
    if (book >= CFGXML_BOOK_COUNT || hit->record == nullptr) continue;
    const std::uint32_t position = *static_cast<const std::uint32_t*>(hit->record);
    if (position >= CFGXML_BOOK_RECORDS) continue;
    void** const word = &words_.records[book][position];
    *word = hit->record;
    set_[words_set++ % std::size(set_)] = word;
  }
  words_set_ = words_set;
}

int KeypadSearch::run(const Trie& trie, const char* keys, HitTable& table) {
  table.clear();
  if (*keys == '\0') return 0;
  trie_ = &trie;
  hits_.clear();
  if (!match(keys)) return kNoMatch;
  collect();
  table.put(hits_);
  return steps_;
}

/// Leaves in front_ the places that the keys lead to, in the order in which they are collected.
bool KeypadSearch::match(const char* keys) {
  front_.clear();
  for (depth_ = 0; keys[depth_] != '\0'; ++depth_) {
    const std::uint8_t row = typed_row(keys[depth_]);
    if (row == kNoRow) return false;
    next_.clear();
    if (depth_ == 0) match_first(row);
    std::uint32_t found = 0;
    for (const Reached& place : front_) {
      match_below(place, row, found);
      found += kLongestRow;
    }
    std::swap(front_, next_);
    if (front_.empty()) return false;
    order_matches();
  }
  return true;
}

void KeypadSearch::match_first(std::uint8_t row) {
  for (const char character : kKeypadRows[row]) {
    const Number node = trie_->top(character);
    const auto found = static_cast<std::uint32_t>(next_.size());
    if (node != kNone) next_.push_back({node, 0, trie_->count((*trie_)[node]), found});
  }
}

/// Finds the places one byte below this one that the row matches; found is the number of the first.
void KeypadSearch::match_below(const Reached& place, std::uint8_t row, std::uint32_t found) {
  const Node& node = (*trie_)[place.node].node;
  const auto end = place.start + static_cast<std::uint32_t>(node.length());
  if (depth_ < end) {  // within the node's text
    const KeypadPlace key = kKeypad[node.text[depth_ - place.start]];
    if (key.row == row) next_.push_back({place.node, place.start, place.weight, found + key.rank});
    return;
  }
  if (node.kind() != Kind::kBranch) return;
  for (Number below = node.down.to; below != kNone; below = (*trie_)[below].node.next.to) {
    const Cell& child = (*trie_)[below];
    const KeypadPlace key = kKeypad[child.node.text[0]];
    if (key.row == row) next_.push_back({below, end, trie_->count(child), found + key.rank});
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

/// Searches breadth-first, one level of bytes after the other. A string counts a step at the level
/// above its end, where it is found, and one at its own; the strings that are no longer than the
/// keys count the latter alone. A branch is kept as the list of its children, as it is while their
/// nearest end lies deeper; levels at which nothing ends are left out. Neither changes the order.
void KeypadSearch::collect() {
  steps_ = 0;
  start_next();
  for (const Reached& place : front_) keep(reached(place.node, place.start));
  std::uint32_t level = depth_;
  while (!next_.empty() && steps_ < kMostSteps) {
    level = std::max(level, nearest_ - 1);
    std::swap(front_, next_);
    start_next();
    for (const Reached& place : front_) {
      if (place.weight > level + 1) {
        keep(place);
      } else if (place.found == kChildren) {
        look_below(place.node, place.start, level);
      } else {
        take_step(place, level);
      }
      if (steps_ == kMostSteps) return;
    }
    ++level;
  }
}

/// Takes the steps of one level among the siblings from this one on, and below them.
void KeypadSearch::look_below(Number node, std::uint32_t start, std::uint32_t level) {
  below_.clear();
  while (steps_ != kMostSteps) {
    if (node == kNone) {
      if (below_.empty()) return;
      node = below_.back().node;
      start = below_.back().start;
      below_.pop_back();
      continue;
    }
    const Node& cell = (*trie_)[node].node;
    const std::uint32_t nearest = start + cell.down.tag;
    const bool is_branch = cell.kind() == Kind::kBranch;
    if (cell.down.tag == kNever || nearest > level + 1) {
      keep(reached(node, start));
    } else if (is_branch) {
      below_.push_back({cell.next.to, start, 0, 0});
      start += static_cast<std::uint32_t>(cell.length());
      node = cell.down.to;
      continue;
    } else {
      take_step({node, start, nearest, kLeaf}, level);
    }
    node = cell.next.to;
  }
}

/// What is to be kept of a node.
KeypadSearch::Reached KeypadSearch::reached(Number node, std::uint32_t start) const {
  const Node& cell = (*trie_)[node].node;
  const std::uint32_t distance = cell.down.tag;
  const std::uint32_t nearest = distance != kNever ? start + distance : kNowhere;
  if (cell.kind() != Kind::kBranch) return {node, start, nearest, kLeaf};
  return {cell.down.to, start + static_cast<std::uint32_t>(cell.length()), nearest, kChildren};
}

void KeypadSearch::take_step(const Reached& leaf, std::uint32_t level) {
  ++steps_;
  trie_->for_each_record((*trie_)[leaf.node],
                         [this](const Record& record) { hits_.push_back(&record); });
  if (leaf.weight > level) keep(leaf);
}

void KeypadSearch::start_next() {
  next_.clear();
  nearest_ = kNowhere;
}

void KeypadSearch::keep(const Reached& place) {
  if (place.weight == kNowhere) return;
  next_.push_back(place);
  nearest_ = std::min(nearest_, place.weight);
}

}  // namespace cfgxml::search
