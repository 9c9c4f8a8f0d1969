#include "phone.h"

#include <cfgxml/binding.h>
#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>

#include "runtime/shell.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kRemoval = "rm -f ";
constexpr std::string_view kCopy = "cp -f \"";
constexpr std::string_view kBetween = "\" \"";

bool starts_with(std::string_view text, std::string_view part) {
  return text.substr(0, part.size()) == part;
}

int copy(std::string_view paths) {
  const std::size_t between = paths.find(kBetween);
  require(between != std::string_view::npos && paths.back() == '"', "a copy has two paths");
  const std::string_view source = paths.substr(0, between);
  std::string_view target = paths.substr(between + kBetween.size());
  target.remove_suffix(1);
  std::error_code error;
  fs::copy_file(source, target, fs::copy_options::overwrite_existing, error);
  return error ? 1 : 0;
}

int run_command(std::string_view command) {
  if (starts_with(command, kCopy)) return copy(command.substr(kCopy.size()));
  require(starts_with(command, kRemoval), "a command is a copy or a removal");
  std::error_code error;
  fs::remove(command.substr(kRemoval.size()), error);
  return error ? 1 : 0;
}

bool phone_made = false;

constexpr const char* kFolders[] = {
    "/app/factory/Static/XMLBrowser",
    "/config/Network/Rcpe",
    "/config/Phone/Contact",
    "/config/Phone/General/DialRule",
    "/config/Phone/History",
    "/config/Phone/Message",
    "/config/System",
    "/tmp",
};

}  // namespace

/// Stands in for the C library's, through which the plug-in removes files. libFuzzer starts its own
/// helpers with it in processes that run no input, and therefore make no phone.
extern "C" int system(const char* command) {
  if (phone_made) return run_command(command);
  static const auto c_library =
      reinterpret_cast<int (*)(const char*)>(::dlsym(RTLD_NEXT, "system"));
  return c_library(command);
}

Phone::Phone() : folder_(fs::temp_directory_path() / "fuzz-XXXXXX") {
  require(::mkdtemp(folder_.data()) != nullptr, "there is a folder for the profile");
  for (const char* folder : kFolders) fs::create_directories(folder_ + folder);
  cfgxml_set_root(folder_.c_str());
  host::the_host().bind(cfgxml_cb_init);
  host::the_host().open_profile(folder_);
  host::run_commands_with(run_command);
  phone_made = true;
}

Phone::~Phone() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

void Phone::write(const char* path, std::string_view content) const {
  std::FILE* file = std::fopen(on_disk(path).c_str(), "wb");
  require(file != nullptr && std::fwrite(content.data(), 1, content.size(), file) == content.size(),
          "the input is written");
  std::fclose(file);
}
