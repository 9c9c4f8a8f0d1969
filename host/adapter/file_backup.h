// A copy of a file while something else replaces it.
#pragma once

#include <filesystem>

namespace host {

/// A copy of a file beside it, put back unless the change that follows is kept; a file that did not
/// exist is removed instead. A copy that is found at the next start means that the change was cut
/// short.
class FileBackup {
 public:
  explicit FileBackup(const std::filesystem::path& file);
  ~FileBackup();
  FileBackup(const FileBackup&) = delete;
  FileBackup& operator=(const FileBackup&) = delete;

  /// False when the file exists and could not be copied.
  bool safe() const { return safe_; }
  void keep_change() { keep_change_ = true; }

  /// Puts the copy back if there is one.
  static void recover(const std::filesystem::path& linked);

 private:
  std::filesystem::path file_;
  bool existed_;
  bool safe_;
  bool keep_change_ = false;
};

}  // namespace host
