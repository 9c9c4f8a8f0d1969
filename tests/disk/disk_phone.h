// The fixture of the disk tests: a phone with something in every file, whose shell commands run
// through the recorded calls, and which can be started again from any set of files.
#pragma once

#include <functional>
#include <string>

#include "disk/disk_states.h"
#include "support/paths.h"
#include "support/phone.h"

namespace disk_test {

using namespace cfgxml::paths;  // NOLINT(google-build-using-namespace): the files are its subject

/// What a damaged file holds in the tests; it must not be lost either.
inline constexpr char kDamaged[] = "<Damaged><Group Name=\"Friends\"";

/// What the runs of all tests add up to; printed at the end.
struct Figures {
  int operations = 0;
  int cut_states = 0;
  int loads = 0;
  int faults = 0;
};
Figures& figures();

using disk_states::Files;

class DiskPhone : public phone_test::Phone {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Fills the profile's folder anew, and loads it.
  void start_anew();

  /// The files below the profile's folder, by their paths in it.
  Files files() const;
  std::string uploaded(const std::string& name) const { return on_disk("/" + name); }

  /// What a phone finds that starts with these files: everything that its lists and the functions
  /// of the plug-in give, whether a list can be changed, and whether damaged content is still
  /// there. The phone of the test goes on as it was.
  std::string found_with(const Files& files);

  /// What the host's blocks hold.
  static std::string in_memory();

 private:
  void fill_profile() const;
  std::string found_in(const std::string& folder);

  std::filesystem::path scratch_;
};

CONTACT_DATA_T contact(const std::string& name, const std::string& group = "Default", int id = 0);
GROUP_DATA_T group(const std::string& name, int id = 0);

}  // namespace disk_test
