// Files that the user names on the command line.
#pragma once

#include <filesystem>
#include <string>

#include "profile.h"

namespace deskphone {

/// Throws Failure unless the file can be read, holds something, and has a path that the phone's
/// shell commands may carry.
void check_file(const std::filesystem::path& file);

/// A file that a command writes for the user.
class Target {
 public:
  /// Throws Failure when its folder does not exist: a mistyped path makes no new one.
  explicit Target(std::filesystem::path file);

  const std::filesystem::path& path() const { return file_; }

  /// True when it is this program's standard output, which then carries nothing else.
  bool is_output() const;

  /// Replaces the file in one piece; what is no plain file under one name (a link, a device) is
  /// written in place. Throws Failure when that fails.
  void write(const std::string& content) const;

  /// Throws what write() does.
  [[noreturn]] void fail() const;

 private:
  std::filesystem::path file_;
};

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
