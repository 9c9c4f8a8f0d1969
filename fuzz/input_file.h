// The input of a fuzz target as a file in memory, for code that opens files by their path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "checks.h"

class InputFile {
 public:
  InputFile() : descriptor_(::memfd_create("input", 0)) {
    if (descriptor_ < 0) std::abort();
    path_ = "/proc/self/fd/" + std::to_string(descriptor_);
  }
  ~InputFile() { ::close(descriptor_); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  void hold(const std::uint8_t* data, std::size_t size) const {
    if (::ftruncate(descriptor_, 0) != 0 || ::lseek(descriptor_, 0, SEEK_SET) != 0 ||
        ::write(descriptor_, data, size) != static_cast<ssize_t>(size)) {
      std::abort();
    }
  }
  const char* path() const { return path_.c_str(); }

 private:
  int descriptor_;
  std::string path_;
};
