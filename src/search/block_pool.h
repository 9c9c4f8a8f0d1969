// Cells of one type at stable addresses: taken from blocks instead of one allocation each, and
// given back to a free list at once.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace cfgxml::search {

/// Link is the member of a cell that points to another one; it chains the free cells. A cell is
/// value-initialised while it is free. Blocks are kept until the pool goes.
template <typename Cell, auto Link>
class BlockPool {
 public:
  static constexpr std::size_t kBlockCells = 64;

  /// Makes sure that the next `count` takes succeed. Throws std::bad_alloc; what it got stays free.
  void reserve(std::size_t count) {
    while (free_count_ < count) add_block();
  }

  /// A reserved cell.
  Cell* take() {
    Cell* cell = free_;
    free_ = static_cast<Cell*>(cell->*Link);
    cell->*Link = nullptr;
    --free_count_;
    return cell;
  }

  void give_back(Cell* cell) {
    *cell = Cell{};
    cell->*Link = free_;
    free_ = cell;
    ++free_count_;
  }

  /// Visits every cell, free ones too; the visit may give cells back.
  template <typename Visit>
  void for_each(Visit visit) {
    for (const auto& block : blocks_) {
      for (std::size_t i = 0; i != kBlockCells; ++i) visit(block[i]);
    }
  }

 private:
  void add_block() {
    blocks_.push_back(std::make_unique<Cell[]>(kBlockCells));
    // From the last to the first, so that cells are taken in the order of their addresses.
    for (std::size_t i = kBlockCells; i-- != 0;) give_back(&blocks_.back()[i]);
  }

  std::vector<std::unique_ptr<Cell[]>> blocks_;
  Cell* free_ = nullptr;
  std::size_t free_count_ = 0;
};

}  // namespace cfgxml::search
