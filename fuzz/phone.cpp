#include "phone.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "faults/commands.h"
#include "runtime/logging.h"
#include "runtime/shell.h"

namespace {

namespace fs = std::filesystem;

struct Folder {
  Folder() : path(fs::temp_directory_path() / "fuzz-XXXXXX") {
    REQUIRE(::mkdtemp(path.data()) != nullptr);
  }
  ~Folder() {
    std::error_code error;
    fs::remove_all(path, error);
  }
  std::string path;
};

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

void require_unbroken(const std::string& rule) { require(rule.empty(), rule.c_str()); }

operations::World& phone() {
  static const Folder folder;
  static operations::World world(folder.path, operations::Callers::kOne);
  [[maybe_unused]] static const bool started = [] {
    host::run_commands_with([](const std::string& command) {
      const int result = phone_test::run_without_shell(command);
      REQUIRE(result != phone_test::kNoCommand);
      return result;
    });
    host::observe_log([](host::LogLevel, const std::string&) {});  // messages are formatted then
    world.start();
    return true;
  }();
  return world;
}
