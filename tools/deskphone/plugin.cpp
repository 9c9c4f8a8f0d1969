#include "plugin.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdlib>

#include "failure.h"

namespace deskphone {
namespace {

namespace fs = std::filesystem;

/// Without a folder: the dynamic linker looks for it where this program's run path says, which is
/// the build folder or, when installed, the library folder beside the program's, and then where the
/// system's libraries are.
constexpr char kLibrary[] = "libcfgxml.so.1";

}  // namespace

Plugin::Plugin(const fs::path& file) : file_(file), library_(::dlopen(file.c_str(), RTLD_NOW)) {
  if (library_ == nullptr) {
    throw Failure(fmt::format(
        "The plug-in can not be loaded: {}. Build or install it, or set DESKPHONE_PLUGIN "
        "to where it is.",
        ::dlerror()));
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
  const char* chosen = std::getenv("DESKPHONE_PLUGIN");
  return chosen != nullptr ? chosen : kLibrary;
}

}  // namespace deskphone
