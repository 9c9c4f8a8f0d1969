// The packed tables of the host's blocks: groups, contacts, blacklist and history share these
// operations. Used slots stand at the front and end at the first id below 1.
#pragma once

#include <cfgxml/host.h>

#include <cstddef>
#include <cstdint>
#include <limits>

namespace cfgxml {

/// A view of a table with a fixed number of slots; Id names the record's id field.
template <typename Record, std::size_t Capacity, std::int32_t Record::*Id>
class Slots {
 public:
  using Table = Record[Capacity];

  explicit Slots(Table& table) : table_(table) {}

  Record* begin() const { return table_; }
  /// Behind the last used slot.
  Record* end() const {
    Record* slot = table_;
    while (slot != table_ + Capacity && slot->*Id >= 1) ++slot;
    return slot;
  }
  Record* limit() const { return table_ + Capacity; }
  bool full() const { return end() == limit(); }

  /// The used record with this id, or nullptr.
  Record* find(std::int32_t id) const {
    for (Record& record : *this) {
      if (record.*Id == id) return &record;
    }
    return nullptr;
  }

  /// The id of a new record: the largest used id plus 1. Once the largest is the largest there can
  /// be, the lowest id that is free.
  std::int32_t next_id() const {
    std::int32_t largest = 0;
    for (const Record& record : *this) {
      if (record.*Id > largest) largest = record.*Id;
    }
    if (largest < std::numeric_limits<std::int32_t>::max()) return largest + 1;
    std::int32_t id = 1;
    while (find(id) != nullptr) ++id;
    return id;
  }

  /// Moves the later slots down over this one and clears the last.
  void remove(Record* record) const {
    const auto later = static_cast<std::size_t>(limit() - record - 1);
    rl_memmove(record, record + 1, later * sizeof(Record));
    rl_memset(limit() - 1, 0, sizeof(Record));
  }

  void clear() const { rl_memset(table_, 0, sizeof(Table)); }

 private:
  Table& table_;
};

}  // namespace cfgxml
