// The phone of a fuzz target: the reference host and the plug-in over a profile folder. Put TMPDIR
// in memory for speed, as fuzz/run does.
//
// No input starts a shell: the plug-in's two commands are carried out in the process, and any other
// command is a finding.
#pragma once

#include <string>
#include <string_view>

#include "host.h"

/// Ends the run as a finding when something that must always hold does not.
void require(bool holds, const char* what);
/// The same for a check of the data's rules, which names the broken one.
void require_unbroken(const std::string& rule);
#define REQUIRE(holds) require(holds, #holds)

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
