// Every state in which a cut of the power may leave a disk, from the calls that changed it.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "faults/disk/recorded_calls.h"

namespace disk_states {

/// Paths and contents.
using Files = std::map<std::string, std::string>;

/// A disk that keeps what was synced, and may or may not keep the rest: of the names created,
/// renamed and removed in a folder since its last sync any selection, and of a file's changes since
/// its last sync any first part, down to the bytes of a write. Names do not wait for contents.
class Disk {
 public:
  explicit Disk(const std::vector<recorded_calls::Known>& known);

  void apply(const recorded_calls::Event& event);

  /// What the disk may hold if the power is cut now.
  std::set<Files> after_a_cut() const;

 private:
  /// A name's new file, 0 for none; a rename is two of them that happen together.
  using Naming = std::vector<std::pair<std::string, int>>;
  struct Content {
    std::string synced;
    std::vector<recorded_calls::Event> unsynced;
  };

  void name(const std::string& path, Naming naming);
  std::vector<std::map<std::string, int>> names_after_a_cut() const;
  static std::set<std::string> contents_after_a_cut(const Content& content);

  std::map<int, Content> contents_;
  std::map<std::string, int> names_;
  std::map<std::string, std::vector<Naming>> pending_;  // by folder
};

}  // namespace disk_states
