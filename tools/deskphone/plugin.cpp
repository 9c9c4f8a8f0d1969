#include "plugin.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdlib>

#include "failure.h"
#include "profile.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

constexpr char kLibrary[] = "libcfgxml.so";

}  // namespace

Plugin::Plugin(const fs::path& file) : file_(file), library_(::dlopen(file.c_str(), RTLD_NOW)) {
  if (library_ == nullptr) {
    throw Failure(fmt::format("The plug-in {} can not be loaded: {}.", file.string(), ::dlerror()));
  }
}

void* Plugin::symbol(const char* name) const {
  if (void* address = ::dlsym(library_, name)) return address;
  throw Failure(fmt::format(
      "The plug-in {} has no function {}. Build the plug-in and deskphone from the same "
      "sources.",
      file_.string(), name));
}

fs::path Plugin::find() {
  if (const char* chosen = std::getenv("DESKPHONE_PLUGIN")) return chosen;
  const fs::path here = program_file().parent_path();
  const fs::path candidates[] = {here / kLibrary, here / ".." / "lib" / kLibrary, CFGXML_LIBRARY};
  for (const fs::path& candidate : candidates) {
    if (fs::exists(candidate)) return candidate;
  }
  throw Failure(
      fmt::format("{} is neither beside deskphone nor at {}. Build it, or set "
                  "DESKPHONE_PLUGIN to where it is.",
                  kLibrary, CFGXML_LIBRARY));
}

}  // namespace deskphone
