// The configuration items of the phone: texts and whole numbers by section and key, kept in one
// JSON file:
//   { "26": { "65": "Europe(Lisbon)" } }
#pragma once

#include <filesystem>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>

namespace host {

/// A file that holds no settings; says where it goes wrong.
class SettingsError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Settings {
 public:
  /// Forgets everything and reads the file; one that is missing holds no items. Throws
  /// SettingsError for a file that can't be read or holds anything else: there are no items then,
  /// and nothing is saved.
  void open(std::filesystem::path file);

  /// The item's text, or nothing when it is not set.
  std::optional<std::string> get(int section, int key) const;

  void set(int section, int key, const std::string& value);

  /// Makes the section's changes permanent, and no other's; false when that fails.
  bool save(int section);

 private:
  mutable std::mutex mutex_;
  std::filesystem::path file_;  // "" without a sound file; guarded by mutex_, as are the following
  nlohmann::json items_;
  nlohmann::json saved_;  // as in the file
};

}  // namespace host
