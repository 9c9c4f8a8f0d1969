#include "search/trie.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace cfgxml::search {
namespace {

constexpr std::uint32_t kMostStrings = (1U << 20U) - 1;  // what a branch can count

std::uint8_t byte_of(char character) { return static_cast<std::uint8_t>(character); }

/// The bytes that a search collects below what the keys match; names go on in others.
bool is_collected(std::uint8_t byte) { return byte >= 32 && byte <= 126; }

bool is_book(int book) { return book >= 0 && book < CFGXML_BOOK_COUNT; }

std::size_t use_of(int book) {
  return is_book(book) ? static_cast<std::size_t>(book) : kOtherRecords;
}

std::uint32_t bit_of(int book) { return is_book(book) ? 1U << static_cast<unsigned>(book) : 0; }

void set_tag(Node& node, Kind kind, std::size_t length) {
  node.next.tag = (static_cast<unsigned>(kind) | static_cast<unsigned>(length) << 2U) & 0xffU;
}

/// Writes a node's text, which may come from the one it has.
void set_text(Node& node, Kind kind, const void* bytes, std::size_t length) {
  std::memmove(node.text, bytes, length);
  if (length == 0) node.text[0] = 0;  // comes before every other
  set_tag(node, kind, length);
}

/// How many bytes of the node's text the text begins with.
std::size_t common_length(const Node& node, const char* text) {
  const std::size_t length = node.length();
  std::size_t common = 0;
  while (common != length && node.text[common] == byte_of(text[common])) ++common;
  return common;
}

/// Tells a node of an end so many bytes from its start.
void report_end(Node& node, std::size_t distance) {
  node.down.tag = std::min({distance, std::size_t{kFarthest}, std::size_t{node.down.tag}}) & 0xffU;
}

}  // namespace

// ---- Looking up ---------------------------------------------------------------------------------

/// The link to the child whose text begins with this byte, or to where it belongs.
Link* Trie::child_link(Cell& branch, std::uint8_t first) {
  Link* link = &branch.node.down;
  while (link->to != kNone) {
    Node& child = cells_[link->to].node;
    if (child.text[0] >= first) break;
    link = &child.next;
  }
  return link;
}

bool Trie::begins(const Link& link, std::uint8_t first) const {
  return link.to != kNone && cells_[link.to].node.text[0] == first;
}

Trie::Place Trie::find(const char* text) {
  path_.clear();
  if (*text == '\0') return {1, kNone};
  std::uint32_t strings = 0;
  Link* link = &roots_[byte_of(*text)];
  while (begins(*link, byte_of(*text))) {
    path_.push_back(link);
    Cell& cell = cells_[link->to];
    if (*text != '\0') strings = count(cell);
    const std::size_t length = common_length(cell.node, text);
    text += length;
    if (length != cell.node.length()) break;
    if (cell.node.kind() != Kind::kBranch)
      return *text == '\0' ? Place{strings, link->to} : Place{};
    link = child_link(cell, byte_of(*text));
  }
  return *text == '\0' ? Place{strings, kNone} : Place{};
}

std::uint32_t Trie::count(const Cell& node) const {
  if (node.node.kind() == Kind::kBranch) return node.branch.count;
  return node.node.kind() == Kind::kLeaf ? 1 : cells_[node.node.down.to].sharer.count;
}

/// The books that have strings there.
std::uint32_t Trie::books(const Cell& node) const {
  if (node.node.kind() == Kind::kBranch) return node.branch.books;
  std::uint32_t books = 0;
  for_each_record(node, [&](const Record& record) { books |= bit_of(record.book); });
  return books;
}

bool Trie::spells(const char* text) const {
  for (const Link* link : path_) {
    const Node& node = cells_[link->to].node;
    if (common_length(node, text) != node.length()) return false;
    text += node.length();
  }
  return *text == '\0';
}

TRIE_ENTRY_T* Trie::list(Number leaf) {
  const Cell& cell = cells_[leaf];
  const auto found = lists_.find(&cell);
  if (found != lists_.end()) return found->second.get();
  auto entries = std::make_unique<TRIE_ENTRY_T[]>(count(cell));
  TRIE_ENTRY_T* entry = entries.get();
  for_each_record(cell, [&](const Record& record) {
    *entry = {{record.book, record.record}, entry + 1};
    ++entry;
  });
  entry[-1].next = nullptr;
  return lists_.emplace(&cell, std::move(entries)).first->second.get();
}

// ---- Adding -------------------------------------------------------------------------------------

bool Trie::reserve(const Texts& texts, int book) {
  std::size_t nodes = 0;
  std::size_t longest = 0;
  for (const char* text : texts) {
    if (is_blank(text)) continue;
    const std::size_t length = std::strlen(text);
    nodes += length / 4 + 4;  // its branches and its leaf, and two of nodes that it splits
    longest = std::max(longest, length);
  }
  if (nodes == 0) return true;
  if (strings_ + kTexts > kMostStrings) return false;
  try {
    cells_.reserve(kNodes, nodes);
    cells_.reserve(use_of(book), 1);
    if (path_.capacity() < longest + 2) path_.reserve(longest + 2);
    if (sharers_.capacity() < most_sharers_ + kTexts) sharers_.reserve(2 * most_sharers_ + kTexts);
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
  const char* end = text;
  const char* shown = text;  // from here on all bytes are collected
  for (; *end != '\0'; ++end) {
    if (!is_collected(byte_of(*end))) shown = end + 1;
  }
  rooted_ = true;
  ++strings_;
  const Number record = record_of(info);
  const auto length_left = [&] { return static_cast<std::size_t>(end - text); };
  Link* link = &roots_[byte_of(*text)];
  while (true) {
    if (!begins(*link, byte_of(*text))) {
      if (length_left() <= sizeof Node::text) break;
      add_node(*link, Kind::kBranch, text, sizeof Branch::text);
    }
    Cell& cell = cells_[link->to];
    const std::size_t length = common_length(cell.node, text);
    const bool is_branch = cell.node.kind() == Kind::kBranch;
    const bool is_whole = length == cell.node.length();
    if (is_whole && !is_branch && text[length] == '\0') return add_sharer(cell, record);
    Cell& branch = is_whole && is_branch ? cell : split(*link, length);
    ++branch.branch.count;
    branch.branch.books = (branch.branch.books | bit_of(info.book)) & kAllBooks;
    if (text >= shown) report_end(branch.node, length_left());
    text += branch.node.length();
    link = child_link(branch, byte_of(*text));
  }
  Node& leaf = add_node(*link, Kind::kLeaf, text, length_left()).node;
  leaf.down.set(record);
  if (text >= shown) report_end(leaf, length_left());
}

/// The cell of a record; texts that come in a row share it.
Number Trie::record_of(const TRIE_INFO_T& info) {
  if (last_record_ == kNone || cells_[last_record_].record.record != info.record ||
      cells_[last_record_].record.book != info.book) {
    last_record_ = cells_.take(use_of(info.book));
    cells_[last_record_].record = {info.record, info.book, 0};
  }
  ++cells_[last_record_].record.strings;
  ++book_strings_[use_of(info.book)];
  return last_record_;
}

/// Puts a node before the link's.
Cell& Trie::add_node(Link& link, Kind kind, const void* text, std::size_t length) {
  const Number number = cells_.take(kNodes);
  Cell& cell = cells_[number];
  cell.node.down.tag = kNever;
  set_text(cell.node, kind, text, length);
  cell.node.next.set(link.to);
  link.set(number);
  return cell;
}

/// Puts a branch before a leaf or a longer branch, with so many of its bytes at most.
Cell& Trie::split(Link& link, std::size_t length) {
  const Number lower = link.to;
  Cell& cell = cells_[lower];
  const Kind kind = cell.node.kind();
  length = std::min(length, sizeof Branch::text);
  Cell& upper = add_node(link, Kind::kBranch, cell.node.text, length);
  upper.node.next.set(cell.node.next.to);
  cell.node.next.set(kNone);
  upper.node.down = cell.node.down;
  upper.node.down.set(lower);
  upper.branch.count = count(cell) & kMostStrings;
  upper.branch.books = books(cell) & kAllBooks;
  set_text(cell.node, kind, cell.node.text + length, cell.node.length() - length);
  if (cell.node.down.tag == kNever) {
    refresh(cell);
  } else {
    cell.node.down.tag = (cell.node.down.tag - length) & 0xffU;
  }
  return upper;
}

/// Works out how far the node's nearest end is.
void Trie::refresh(Cell& cell) {
  std::uint32_t below = cell.node.kind() == Kind::kBranch ? kNever : 0;
  for (Number child = below == 0 ? kNone : cell.node.down.to; child != kNone;) {
    const Node& node = cells_[child].node;
    below = std::min<std::uint32_t>(below, node.down.tag);
    child = node.next.to;
  }
  cell.node.down.tag = kNever;
  const std::uint8_t* const text = cell.node.text;
  if (below == kNever || !std::all_of(text, text + cell.node.length(), is_collected)) return;
  report_end(cell.node, cell.node.length() + below);
}

void Trie::add_sharer(Cell& leaf, Number record) {
  lists_.erase(&leaf);
  if (leaf.node.kind() == Kind::kLeaf) {
    const Number first = cells_.take(kNodes);
    cells_[first].sharer.next.set(first);
    cells_[first].sharer.record.set(leaf.node.down.to);
    cells_[first].sharer.count = 1;
    leaf.node.down.set(first);
    set_tag(leaf.node, Kind::kSharedLeaf, leaf.node.length());
  }
  Sharer& last = cells_[leaf.node.down.to].sharer;
  const Number number = cells_.take(kNodes);
  Sharer& added = cells_[number].sharer;
  added.next.set(last.next.to);
  added.record.set(record);
  added.count = last.count + 1;
  last.next.set(number);
  leaf.node.down.set(number);
  most_sharers_ = std::max<std::size_t>(most_sharers_, added.count);
}

// ---- Removing -----------------------------------------------------------------------------------

void Trie::erase(const Texts& texts, const void* record) {
  for (const char* text : texts) {
    if (!is_blank(text)) erase_text(text, record);
  }
}

void Trie::erase_text(const char* text, const void* record) {
  const Number number = find(text).leaf;
  if (number == kNone) return;
  Cell& leaf = cells_[number];
  bool found = false;
  keep_sharers(leaf, [&](Number sharer) {
    const bool oldest = !found && cells_[sharer].record.record == record;
    found = found || oldest;
    return !oldest;
  });
  if (leaf.node.down.to != kNone) return;
  std::size_t distance = leaf.node.length();
  unlink(*path_.back());
  for (path_.pop_back(); !path_.empty(); path_.pop_back()) {
    distance += cells_[path_.back()->to].node.length();
    settle(*path_.back(), distance);
  }
}

int Trie::purge(int book) {
  const std::uint32_t before = strings_;
  if (book_strings_[use_of(book)] == strings_) {  // nothing else is there
    clear();
    return static_cast<int>(before);
  }
  walk<true>(book, [&](Cell& leaf) {
    keep_sharers(leaf, [&](Number record) { return cells_.use(record) != use_of(book); });
  });
  return static_cast<int>(before - strings_);
}

void Trie::clear() {
  roots_ = {};
  cells_ = {};
  lists_.clear();
  book_strings_ = {};
  strings_ = 0;
  last_record_ = kNone;
}

/// Keeps those entries of a leaf that are wanted; path_ leads to it.
template <typename Keep>
void Trie::keep_sharers(Cell& leaf, Keep keep) {
  std::uint32_t gone = 0;
  sharers_.clear();
  for_each_sharer(leaf, [&](Number number) {
    if (keep(number)) {
      sharers_.push_back(number);
    } else {
      ++gone;
      drop_record(number);
    }
  });
  if (gone == 0) return;
  write_sharers(leaf);
  strings_ -= gone;
  for (std::size_t i = 0; i + 1 < path_.size(); ++i) {
    Branch& branch = cells_[path_[i]->to].branch;
    branch.count = (branch.count - gone) & kMostStrings;
  }
}

void Trie::drop_record(Number record) {
  --book_strings_[cells_.use(record)];
  if (--cells_[record].record.strings != 0) return;
  if (last_record_ == record) last_record_ = kNone;
  cells_.give_back(record);
}

/// Gives the leaf those of sharers_, which are no more than it had. It may be left without any.
void Trie::write_sharers(Cell& leaf) {
  lists_.erase(&leaf);
  const std::size_t left = sharers_.size();
  if (leaf.node.kind() == Kind::kSharedLeaf) {
    const Number last = leaf.node.down.to;
    const Number first = cells_[last].sharer.next.to;
    Number next = first;
    for (std::size_t i = 0; i == 0 || next != first; ++i) {
      const Number number = next;
      Sharer& sharer = cells_[number].sharer;
      next = sharer.next.to;
      if (left <= 1 || i >= left) {
        cells_.give_back(number);
        continue;
      }
      sharer.record.set(sharers_[i]);
      if (i + 1 != left) continue;
      sharer.next.set(first);
      sharer.count = static_cast<std::uint32_t>(left);
      leaf.node.down.set(number);
    }
  }
  if (left > 1) return;
  set_tag(leaf.node, Kind::kLeaf, leaf.node.length());
  leaf.node.down.set(left == 0 ? kNone : sharers_[0]);
}

/// Sets a branch right after ends below it went, the nearest of them so far from its start: without
/// children it goes, and one that is left takes its text over. False when nothing is left.
bool Trie::settle(Link& link, std::size_t distance) {
  Cell& branch = cells_[link.to];
  const Number child = branch.node.down.to;
  if (child == kNone) {
    unlink(link);
    return false;
  }
  if (cells_[child].node.next.to == kNone && join(link)) return true;
  if (distance <= branch.node.down.tag) refresh(branch);
  return true;
}

void Trie::unlink(Link& link) {
  const Number gone = link.to;
  link.set(cells_[gone].node.next.to);
  cells_.give_back(gone);
}

/// Lets the only child of the link's branch stand in its place with both their texts; false when it
/// has no room for them.
bool Trie::join(Link& link) {
  const Number upper = link.to;
  const Number lower = cells_[upper].node.down.to;
  const Node& branch = cells_[upper].node;
  Cell& cell = cells_[lower];
  const Kind kind = cell.node.kind();
  const std::size_t length = branch.length() + cell.node.length();
  std::uint8_t text[sizeof Branch::text + sizeof Node::text];
  if (length > (kind == Kind::kBranch ? sizeof Branch::text : sizeof Node::text)) return false;

  std::memcpy(text, branch.text, branch.length());
  std::memcpy(text + branch.length(), cell.node.text, cell.node.length());
  set_text(cell.node, kind, text, length);
  cell.node.next.set(branch.next.to);
  link.set(lower);
  cells_.give_back(upper);
  refresh(cell);
  return true;
}

// ---- Moving -------------------------------------------------------------------------------------

void Trie::move_to_back(Cell& leaf, RecordRange records) {
  if (leaf.node.kind() == Kind::kLeaf && lists_.empty()) return;
  const auto add_those = [&](bool moving) {
    for_each_sharer(leaf, [&](Number number) {
      if (records.holds(cells_[number].record.record) == moving) sharers_.push_back(number);
    });
  };
  sharers_.clear();
  add_those(false);
  const auto others = static_cast<std::ptrdiff_t>(sharers_.size());
  add_those(true);
  std::sort(sharers_.begin() + others, sharers_.end(), [&](Number left, Number right) {
    return std::less<>()(cells_[left].record.record, cells_[right].record.record);
  });
  if (sharers_.begin() + others != sharers_.end()) write_sharers(leaf);
}

void Trie::lower(int book, RecordRange records, std::size_t bytes) {
  cells_.for_each(use_of(book), [&](Cell& cell) {
    if (cell.record.strings == 0 || !records.holds(cell.record.record)) return;
    cell.record.record = static_cast<char*>(cell.record.record) - bytes;
  });
}

}  // namespace cfgxml::search
