// Files: plain paths, as the caller gives them.
#include "runtime/files.h"

#include <cfgxml/host.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>

int rl_access(const char* path, int mode) { return ::access(path, mode); }

int rl_file_size(const char* path) {
  struct stat status {};
  if (::stat(path, &status) != 0) return -1;
  constexpr int kMost = std::numeric_limits<int>::max();
  return status.st_size < kMost ? static_cast<int>(status.st_size) : kMost;
}

void* rl_opendir(const char* path) { return ::opendir(path); }

void* rl_readdir(void* directory) {
  const struct dirent* found = ::readdir(static_cast<DIR*>(directory));
  if (found == nullptr) return nullptr;
  thread_local CFGXML_DIRECTORY_ENTRY_T entry;
  std::snprintf(entry.d_name, sizeof entry.d_name, "%s", found->d_name);
  return &entry;
}

int rl_closedir(void* directory) { return ::closedir(static_cast<DIR*>(directory)); }

namespace host::files {
namespace {

namespace fs = std::filesystem;

bool write_all(int descriptor, const std::string& content) {
  std::size_t written = 0;
  while (written < content.size()) {
    const ssize_t count = ::write(descriptor, content.data() + written, content.size() - written);
    if (count < 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

bool write_synced(const fs::path& file, const std::string& content) {
  const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (descriptor < 0) return false;
  const bool written = write_all(descriptor, content) && ::fsync(descriptor) == 0;
  return ::close(descriptor) == 0 && written;
}

}  // namespace

std::optional<std::string> read(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  if (!stream || !fs::is_regular_file(file, error)) return std::nullopt;
  std::string content{std::istreambuf_iterator<char>(stream), {}};
  if (stream.bad()) return std::nullopt;
  return content;
}

bool sync(const fs::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return false;
  const bool synced = ::fsync(descriptor) == 0;
  ::close(descriptor);
  return synced;
}

bool replace(const fs::path& file, const std::string& content) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  fs::path temporary = file;
  temporary += ".new";
  if (write_synced(temporary, content)) {
    fs::rename(temporary, file, error);
    if (!error && sync(file.parent_path())) return true;
  }
  fs::remove(temporary, error);
  return false;
}

}  // namespace host::files
