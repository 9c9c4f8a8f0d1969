#include "support/paths.h"

#include <string_view>

namespace cfgxml::paths {
namespace {

constexpr std::string_view kFiles[] = {kContacts, kBlacklist,   kHistory,
                                       kDialNow,  kDialReplace, kBlockOut,
                                       kMessages, kTimezones,   kNotifications};
constexpr std::string_view kFamilies[] = {kRemoteBook, kFactoryDocuments};

std::string& root() {
  static std::string directory;
  return directory;
}

bool is_own(std::string_view path) {
  for (std::string_view file : kFiles) {
    if (path == file) return true;
  }
  for (std::string_view family : kFamilies) {
    if (path.substr(0, family.size()) == family) return true;
  }
  return false;
}

}  // namespace

void set_root(const char* directory) {
  root() = directory != nullptr ? directory : "";
  while (!root().empty() && root().back() == '/') root().pop_back();
}

std::string on_disk(const char* path) {
  if (path == nullptr) return {};
  return is_own(path) ? root() + path : path;
}

}  // namespace cfgxml::paths
