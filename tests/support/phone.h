// The fixture of the tests: the reference host and the plug-in over a fresh profile folder.
#pragma once

#include <cfgxml/binding.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "host.h"

namespace phone_test {

/// Every test starts with an empty profile folder as the plug-in's root, empty host blocks, no
/// settings, deferred saving off and no saver thread. It fails when it leaves a host lock taken, or
/// when a thread released a lock that it did not hold or took locks in a forbidden order.
class Phone : public ::testing::Test {
 protected:
  Phone();
  ~Phone() override;

  void SetUp() override;
  void TearDown() override;

  static ::host::Host& host() { return ::host::the_host(); }
  static CONTACT_DATA_LIST_T& contacts() { return host().lists().contacts(); }
  static BLACK_DATA_LIST_T& blacklist() { return host().lists().blacklist(); }
  static HISTORY_DATA_LIST& history() { return host().lists().history(); }

  /// Files by their published path ("/config/...") or by a name of the test's own ("/import.csv"),
  /// all below the profile folder. A file that is missing reads as "".
  const std::filesystem::path& root() const { return root_; }
  std::string on_disk(const std::string& path) const { return root_.string() + path; }
  void write(const std::string& path, const std::string& text) const;
  std::string read(const std::string& path) const;
  bool exists(const std::string& path) const;

  /// Every message since the test began or forget_log(), at any level, without the level.
  std::vector<std::string> log() const;
  /// True when one of them is exactly this text.
  bool logged(const std::string& text) const;
  void forget_log();

  /// Configuration items; one that is not set reads as "".
  static void set_item(int section, int key, const std::string& value);
  static std::string item(int section, int key);

  /// The save codes posted to the host, and the commands given to its shell, in order.
  std::vector<int> posted() const;
  std::vector<std::string> commands() const;

 private:
  void watch_host();

  std::filesystem::path root_;
  int faulty_releases_;
  int lock_inversions_;
  mutable std::mutex mutex_;
  std::vector<std::string> log_;  // guarded by mutex_, as are the following
  std::vector<int> posted_;
  std::vector<std::string> commands_;
};

}  // namespace phone_test
