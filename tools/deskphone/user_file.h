// Files that the user names on the command line.
#pragma once

#include <filesystem>

#include "profile.h"

namespace deskphone {

/// Throws Failure unless the file can be read, holds something, and has a path that the phone's
/// shell commands may carry.
void check_file(const std::filesystem::path& file);

/// A copy of a file in a folder whose name has no dot, as a phone keeps an upload: the plug-in
/// takes what follows the first dot of the whole path for the extension. Checks the file first.
class Upload {
 public:
  explicit Upload(const std::filesystem::path& file);

  const char* path() const { return copy_.c_str(); }
  bool is_csv() const { return copy_.extension() == ".csv"; }

 private:
  ScratchFolder folder_;
  std::filesystem::path copy_;
};

}  // namespace deskphone
