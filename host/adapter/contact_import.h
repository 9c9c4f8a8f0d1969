// Importing a contact file: the host's half of cfg_upload_contact, called under the phonebook lock.
//
// An import replaces the phonebook. The plug-in reads Contact.xml again afterwards, whatever came
// of it, so the file is complete at that moment in every case: changes that were not yet written
// are written first, and an import that fails leaves the old file and the old contacts.
#pragma once

#include <filesystem>

namespace host {

/// A copy of a file beside it, put back unless the change that follows is kept. A copy that is
/// found at the next start means that the change was cut short.
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
  static void recover(const std::filesystem::path& file);

 private:
  std::filesystem::path file_;
  bool safe_;
  bool keep_change_ = false;
};

}  // namespace host
