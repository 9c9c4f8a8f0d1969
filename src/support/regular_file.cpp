#include "support/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>

namespace cfgxml {
namespace {

constexpr mode_t kMode = 0666;  // less the process's mask

/// Not waiting matters for pipes only; a regular file reads and writes as ever.
int open_regular(const std::string& file, int flags) {
  const int descriptor = ::open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kMode);
  struct stat status {};
  if (descriptor < 0 || (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode))) {
    return descriptor;
  }
  ::close(descriptor);
  return -1;
}

/// An open file fails to become a stream only for want of memory, which says nothing of the file.
File stream_of(int descriptor, const char* mode) {
  if (descriptor < 0) return nullptr;
  File file(::fdopen(descriptor, mode));
  if (file != nullptr) return file;
  ::close(descriptor);
  throw std::bad_alloc();
}

}  // namespace

File open_to_read(const std::string& file) { return stream_of(open_regular(file, O_RDONLY), "rb"); }

File open_to_replace(const std::string& file) {
  File opened = stream_of(open_regular(file, O_RDWR | O_CREAT), "w+b");
  if (opened == nullptr || ::ftruncate(::fileno(opened.get()), 0) != 0) return nullptr;
  return opened;
}

}  // namespace cfgxml
