#include "support/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <new>

namespace cfgxml {
namespace {

/// No file of a phone comes near; a sparse one from outside is not given the memory.
constexpr off_t kLargestFile = 256 << 20;

/// Not waiting matters for pipes only; a regular file reads as ever.
Descriptor open_for_reading(const std::string& file) {
  return Descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

/// Nothing is or can be there, or a socket.
bool is_no_file(int error) {
  return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == ELOOP ||
         error == ENXIO;
}

Reading failed_reading(int error) {
  if (is_no_file(error)) return Reading::kNoFile;
  return is_shortage(error) ? Reading::kShortage : Reading::kUnreadable;
}

/// Reads up to text.size() bytes, and cuts the text to what there was.
bool read_all(const Descriptor& file, std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = ::read(file.number(), text.data() + done, text.size() - done);
    if (count == 0) break;
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      return false;
    }
  }
  text.resize(done);
  return true;
}

}  // namespace

bool is_shortage(int error) {
  return error == ENOMEM || error == EMFILE || error == ENFILE || error == EINTR;
}

bool is_no_regular_file(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

Reading read_file(const std::string& file, std::string& text) {
  const Descriptor descriptor = open_for_reading(file);
  if (!descriptor.is_open()) return failed_reading(errno);
  struct stat status {};
  if (::fstat(descriptor.number(), &status) != 0) return failed_reading(errno);
  if (!S_ISREG(status.st_mode) || status.st_size > kLargestFile) return Reading::kNoFile;
  text.resize(static_cast<std::size_t>(status.st_size));
  return read_all(descriptor, text) ? Reading::kWhole : failed_reading(errno);
}

File open_to_read(const std::string& file) {
  Descriptor descriptor = open_for_reading(file);
  struct stat status {};
  if (!descriptor.is_open() || ::fstat(descriptor.number(), &status) != 0 ||
      !S_ISREG(status.st_mode)) {
    return nullptr;
  }
  File opened(::fdopen(descriptor.number(), "rb"));
  if (opened == nullptr) throw std::bad_alloc();  // an open file lacks nothing else
  descriptor.release();
  return opened;
}

}  // namespace cfgxml
