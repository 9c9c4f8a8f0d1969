#include "support/copy_over.h"

#include <cfgxml/host.h>

#include <string>

#include "support/durable.h"
#include "support/paths.h"

namespace cfgxml {
namespace {

bool holds_the_same(const std::string& file, const std::string& other) {
  std::string text;
  std::string other_text;
  return read_file(file, text) == Reading::kWhole &&
         read_file(other, other_text) == Reading::kWhole && text == other_text;
}

}  // namespace

std::optional<int> copy_over(const char* source, const char* data_file, shell::HostWords words) {
  const std::string from = paths::on_disk(source);
  const std::string to = paths::on_disk(data_file);
  if (!shell::can_copy(from.c_str(), to.c_str())) return std::nullopt;
  durable::Before before;
  if (!before.copy(to)) {
    rl_log_err("%s failed: <%s> can not be kept.", __func__, data_file);
    return std::nullopt;
  }
  const int result = shell::copy_file(from.c_str(), to.c_str(), words);
  // What the numbers of a host's shell mean is the host's affair; the files tell.
  if (!holds_the_same(from, to)) {
    rl_log_err("%s failed: <%s> stays as it was.", __func__, data_file);
    before.put_back();
  } else if (!durable::sync(to) || !before.drop()) {
    rl_log_err("%s failed: <%s> can not be synced.", __func__, data_file);
    return std::nullopt;
  }
  return result;
}

bool can_copy_over(const char* source, const char* data_file) {
  return shell::can_copy(paths::on_disk(source).c_str(), paths::on_disk(data_file).c_str());
}

}  // namespace cfgxml
