// The cells of the index, and the segments they lie in.
//
// The index is a compressed trie of 16-byte cells that name each other by numbers of 24 bits. A
// node holds a piece of text; every string ends at a leaf, which stands first below a branch, and
// without text, when the string is a prefix of others. A longer text goes through branches of one
// child each. A record's cell is shared by its strings.
//
//   roots, by first byte
//     '4' -> branch "4022"
//              |  count 4, books {0, 3}, nearest end 4 bytes from its start
//              +-> leaf ""        -> record {book 3, &bob, 1 string}
//              +-> leaf "1"       -> sharer -> sharer (the leaf points to the last of this ring)
//              |                       +-> record     +-> record
//              +-> leaf "755 12"  -> record {book 0, &anna, 3 strings}
//
//            bits 0-23      24-31         32-55          56-63    64-127
//   branch   next sibling   kind, length  first child    nearest  text[4], count:20, books:12
//   leaf     next sibling   kind, length  record/sharer  nearest  text[8]
//   sharer   next sharer                  record                  count, right in the last one
//   record   its address, its book, and how many strings it has
//
// Siblings are sorted by their first bytes, which differ. Counts, books and nearest ends are set on
// the way down, so nothing points up; a branch may still name a book that has left it.
#pragma once

#include <cfgxml/search.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace cfgxml::search {

/// Of a cell; kNone is no cell's.
using Number = std::uint32_t;
inline constexpr Number kNone = 0;

/// A cell's number, and a byte about something else.
struct Link {
  std::uint32_t to : 24;
  std::uint32_t tag : 8;

  void set(Number number) { to = number & 0xffffffU; }
};

enum class Kind : std::uint8_t { kBranch, kLeaf, kSharedLeaf };

/// A leaf, or as much of a branch as the two have in common.
struct Node {
  Link next;
  Link down;
  std::uint8_t text[8];

  Kind kind() const { return static_cast<Kind>(next.tag & 3U); }
  std::size_t length() const { return next.tag >> 2U; }
};

struct Branch {
  Link next;
  Link down;
  std::uint8_t text[4];
  std::uint32_t count : 20;
  std::uint32_t books : CFGXML_BOOK_COUNT;
};

struct Sharer {
  Link next;
  Link record;
  std::uint32_t count;
};

struct Record {
  void* record;
  std::int32_t book;
  std::uint32_t strings;  // 0 while the cell is free
};

union Cell {
  Node node;
  Branch branch;
  Sharer sharer;
  Record record;
};
static_assert(sizeof(Cell) == 16 && offsetof(Branch, text) == offsetof(Node, text));

/// What a cell is for; segments are not mixed. A book number stands for the book's records.
inline constexpr std::size_t kOtherRecords = CFGXML_BOOK_COUNT;
inline constexpr std::size_t kNodes = CFGXML_BOOK_COUNT + 1;

/// Cells at stable addresses. Not safe for use by several threads at once.
class Cells {
 public:
  static constexpr std::size_t kSegmentCells = 256;

  Cell& operator[](Number number) {
    return memory_[number / kSegmentCells][number % kSegmentCells];
  }
  const Cell& operator[](Number number) const {
    return memory_[number / kSegmentCells][number % kSegmentCells];
  }

  std::size_t use(Number number) const { return segments_[number / kSegmentCells].use; }

  /// Makes sure that the next `count` takes succeed. Throws std::bad_alloc; what it got stays free.
  void reserve(std::size_t use, std::size_t count) {
    while (free_[use] < count) add_segment(use);
  }

  /// A reserved cell, all zeros, in the first segment that has room.
  Number take(std::size_t use) {
    std::size_t& place = first_[use];
    while (!has_room(place, use)) ++place;
    Segment& segment = segments_[place];
    if (segment.used++ == 0) --empty_;
    --free_[use];
    const bool used_before = segment.free != kSegmentCells;
    const std::size_t index = used_before ? segment.free : segment.fresh++;
    Cell& cell = memory_[place][index];
    if (used_before) segment.free = cell.node.next.to & 0xffffU;
    cell = Cell{};
    return static_cast<Number>(place * kSegmentCells + index);
  }

  void give_back(Number number) {
    const std::size_t place = number / kSegmentCells;
    Segment& segment = segments_[place];
    (*this)[number].node.next.set(segment.free);
    segment.free = static_cast<std::uint16_t>(number % kSegmentCells);
    if (--segment.used == 0) ++empty_;
    ++free_[segment.use];
    first_[segment.use] = std::min(first_[segment.use], place);
  }

  /// Frees the empty segments.
  void trim() {
    for (std::size_t place = 1; empty_ != 0; ++place) {
      if (memory_[place] == nullptr || segments_[place].used != 0) continue;
      free_[segments_[place].use] -= kSegmentCells;
      memory_[place].reset();
      --empty_;
    }
  }

  /// Visits the cells of a use, free ones too.
  template <typename Visit>
  void for_each(std::size_t use, Visit visit) {
    for (std::size_t place = 1; place < memory_.size(); ++place) {
      if (memory_[place] == nullptr || segments_[place].use != use) continue;
      Cell* const cells = memory_[place].get();
      std::for_each(cells, cells + segments_[place].fresh, visit);
    }
  }

 private:
  struct Segment {
    std::uint16_t use = 0;
    std::uint16_t used = 0;
    std::uint16_t fresh = 0;             // the cells from here on were never taken
    std::uint16_t free = kSegmentCells;  // heads the list of those given back
  };

  bool has_room(std::size_t place, std::size_t use) const {
    return memory_[place] != nullptr && segments_[place].use == use &&
           segments_[place].used != kSegmentCells;
  }

  void add_segment(std::size_t use) {
    std::unique_ptr<Cell[]> cells(new Cell[kSegmentCells]);
    const std::size_t place = free_place();
    memory_[place] = std::move(cells);
    segments_[place] = Segment{static_cast<std::uint16_t>(use)};
    ++empty_;
    free_[use] += kSegmentCells;
    first_[use] = std::min(first_[use], place);
  }

  /// A place without a segment, but the first: kNone is its number. Throws when there are no
  /// numbers for more cells.
  std::size_t free_place() {
    std::size_t place = 1;
    while (place < memory_.size() && memory_[place] != nullptr) ++place;
    if (place == kMostSegments) throw std::bad_alloc();
    if (place >= memory_.size()) {
      segments_.resize(place + 1);
      memory_.resize(place + 1);
    }
    return place;
  }

  static constexpr std::size_t kMostSegments = (1U << 24) / kSegmentCells;

  std::vector<std::unique_ptr<Cell[]>> memory_;  // by segment; nullptr where there is none
  std::vector<Segment> segments_;
  std::size_t empty_ = 0;
  std::array<std::size_t, kNodes + 1> free_{};   // cells, by use
  std::array<std::size_t, kNodes + 1> first_{};  // no segment of this use below has room
};

}  // namespace cfgxml::search
