// Regular files opened for the C library's buffered reading and writing. A folder, a pipe or a
// device in place of one is refused and never waited for.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace cfgxml {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a file for reading; nullptr when that fails. Throws std::bad_alloc when memory is out.
File open_to_read(const std::string& file);

/// Opens a file for writing, created or emptied; nullptr when that fails. Throws std::bad_alloc,
/// and leaves a file as it is, when memory is out.
File open_to_replace(const std::string& file);

}  // namespace cfgxml
