// The phone of a fuzz target: the reference host and the plug-in over a profile folder. Put TMPDIR
// in memory for speed, as fuzz/run does.
//
// No input starts a shell: the plug-in's two commands are carried out in the process, and any other
// command is a finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "checks.h"
#include "host.h"

class Phone {
 public:
  Phone();
  ~Phone();
  Phone(const Phone&) = delete;
  Phone& operator=(const Phone&) = delete;

  /// Where a path of the phone is below the profile folder.
  std::string on_disk(const char* path) const { return folder_ + path; }
  void write(const char* path, std::string_view content) const;

 private:
  std::string folder_;
};

inline std::string_view text_of_input(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// What was read from such an input is not what a written file gives: a reference can stand for a
/// carriage return, which is a line end in a file.
inline bool has_references(std::string_view input) {
  return input.find("&#") != std::string_view::npos;
}

/// Cuts the next part, which ends at a NUL byte, off an input.
inline std::string_view cut_part(std::string_view& input) {
  const std::string_view part = input.substr(0, input.find('\0'));
  input.remove_prefix(part.size() < input.size() ? part.size() + 1 : part.size());
  return part;
}
