#include "phone.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "runtime/shell.h"
#include "faults/commands.h"

namespace {

namespace fs = std::filesystem;

int run_known_command(const std::string& command) {
  const int result = phone_test::run_without_shell(command);
  REQUIRE(result != phone_test::kNoCommand);
  return result;
}

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

void require_unbroken(const std::string& rule) { require(rule.empty(), rule.c_str()); }

Phone::Phone() : folder_(fs::temp_directory_path() / "fuzz-XXXXXX") {
  REQUIRE(::mkdtemp(folder_.data()) != nullptr);
  cfgxml_set_root(folder_.c_str());
  host::the_host().bind(cfgxml_cb_init);
  host::the_host().open_profile(folder_);
  host::run_commands_with(run_known_command);
}

Phone::~Phone() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

void Phone::write(const char* path, std::string_view content) const {
  const fs::path file = on_disk(path);
  fs::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream << content << std::flush;
  REQUIRE(stream.good());
}
