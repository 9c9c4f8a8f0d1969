// The configuration items of the phone: texts by section and key, kept in one JSON file:
//   { "26": { "65": "Europe(Lisbon)" } }
#pragma once

#include <filesystem>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace host {

class Settings {
 public:
  /// Forgets everything and reads the file; a file that is missing or damaged holds no items.
  void open(std::filesystem::path file);

  /// The item's text, or nothing when it is not set.
  std::optional<std::string> get(int section, int key) const;

  void set(int section, int key, const std::string& value);

  /// Makes the section's changes permanent, and no other's; false when the file can't be written.
  bool save(int section);

 private:
  mutable std::mutex mutex_;
  std::filesystem::path file_;  // guarded by mutex_, as are the following
  nlohmann::json items_;
  nlohmann::json saved_;  // as in the file
};

}  // namespace host
