// Regular files opened for reading, and read whole. A folder, a pipe or a device in place of one is
// refused and never waited for.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace cfgxml {

/// An open file of the system's, closed with its owner; -1 for none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() {
    if (is_open()) ::close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  bool is_open() const { return number_ >= 0; }
  int number() const { return number_; }
  int release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

/// How reading a file ended. What is kUnreadable fails for a lasting reason: the disk, or rights;
/// for kShortage memory, descriptors or time were short, and the next attempt may succeed.
enum class Reading { kWhole, kNoFile, kUnreadable, kShortage };

/// True for an error of the system's that passes by itself.
bool is_shortage(int error);

/// True when the path leads to a folder, a device, a pipe or a socket.
bool is_no_regular_file(const std::string& path);

/// Reads a regular file whole. kNoFile also for what is no regular file, and for one larger than
/// any of a phone's.
Reading read_file(const std::string& file, std::string& text);

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a file for the C library's buffered reading; nullptr when that fails. Throws
/// std::bad_alloc when memory is out.
File open_to_read(const std::string& file);

}  // namespace cfgxml
