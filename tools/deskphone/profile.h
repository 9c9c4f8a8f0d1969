// The phone's storage folder: filled from the samples on first use, and used by one program at a
// time.
#pragma once

#include <filesystem>

namespace deskphone {

class Profile {
 public:
  /// Opens the folder, which is created and filled when it is missing or empty. Throws Failure when
  /// it holds something else, or when another deskphone uses it.
  explicit Profile(const std::filesystem::path& root);
  ~Profile();
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  const std::filesystem::path& root() const { return root_; }

 private:
  void lock();
  void fill();

  std::filesystem::path root_;
  int lock_ = -1;
};

/// This program's own file.
std::filesystem::path program_file();

/// The sample files: $DESKPHONE_SAMPLES, else samples beside the program, as in the build, or in
/// ../share/cfgxml, as installed; throws Failure when there are none.
std::filesystem::path samples();

/// A new empty folder for temporary files, removed with all it holds.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Removes every scratch folder of the program; for a program that ends at once.
  static void remove_all();

 private:
  std::filesystem::path path_;
};

}  // namespace deskphone
