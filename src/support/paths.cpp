#include "support/paths.h"

#include <algorithm>
#include <iterator>

namespace cfgxml::paths {
namespace {

constexpr std::string_view kDataFiles[] = {kContacts,    kBlacklist, kHistory,  kDialNow,
                                           kDialReplace, kBlockOut,  kMessages, kNotifications};
constexpr std::string_view kFamilies[] = {kRemoteBook, kFactoryDocuments};

/// Never destroyed: a host may save as late as in its own destructors.
std::string& root() {
  static std::string& directory = *new std::string;
  return directory;
}

bool is_own(std::string_view path) {
  if (is_data_file(path) || path == kTimezones) return true;
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

bool is_data_file(std::string_view path) {
  return std::find(std::begin(kDataFiles), std::end(kDataFiles), path) != std::end(kDataFiles);
}

std::string on_disk(const char* path) {
  if (path == nullptr) return {};
  return is_own(path) ? root() + path : path;
}

}  // namespace cfgxml::paths
