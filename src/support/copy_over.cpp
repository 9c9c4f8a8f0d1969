#include "support/copy_over.h"

#include <cfgxml/host.h>
#include <unistd.h>

#include <string>

#include "support/durable.h"
#include "support/paths.h"
#include "support/regular_file.h"

namespace cfgxml {
namespace {

/// What a file holds, or nothing when there is none that can be read.
std::optional<std::string> content_of(const std::string& file) {
  std::string text;
  if (read_file(file, text) != Reading::kWhole) return std::nullopt;
  return text;
}

/// The old file takes its place again; where there was none, there is none.
void undo(durable::Before& before, bool existed, const std::string& file) {
  if (existed) {
    before.roll_back();
  } else {
    ::unlink(file.c_str());
  }
}

}  // namespace

std::optional<Copied> copy_over(const char* source, const char* data_file, shell::HostWords words) {
  if (!can_copy_over(source, data_file)) return std::nullopt;
  const std::string from = paths::on_disk(source);
  const std::string file = durable::target_of(paths::on_disk(data_file));
  std::string text;
  const Reading reading = durable::restore(file) ? read_file(file, text) : Reading::kShortage;
  // What can't be read can't be copied, and stays as "<file>.corrupt".
  const bool corrupt = reading == Reading::kUnreadable;
  durable::Before before;
  if (reading == Reading::kShortage || !(corrupt ? before.move(file) : before.copy(file))) {
    rl_log_err("%s failed: <%s> can not be kept.", __func__, data_file);
    return std::nullopt;
  }
  before.let_commands_hold();
  const bool existed = before.keeps();
  const auto old = content_of(file);
  const int result = shell::copy_file(from.c_str(), file.c_str(), words);
  // What the numbers of a host's shell mean is undefined; the files tell.
  const auto now = content_of(file);
  if (now && now == content_of(from)) {
    if (durable::sync(file) && (corrupt ? before.quarantine() : before.commit())) {
      return Copied{result, true};
    }
    rl_log_err("%s failed: <%s> can not be synced.", __func__, data_file);
    undo(before, existed, file);
    return std::nullopt;
  }
  if (result != 0 || now != old) {  // else a host has not run the command
    rl_log_err("%s failed: <%s> stays as it was.", __func__, data_file);
  }
  undo(before, existed, file);
  return Copied{result, false};
}

bool can_copy_over(const char* source, const char* data_file) {
  const std::string from = paths::on_disk(source);
  const std::string to = durable::target_of(paths::on_disk(data_file));
  if (is_no_regular_file(from) || is_no_regular_file(to)) {
    rl_log_err("%s failed: <%s> or <%s> is no regular file.", __func__, source, data_file);
    return false;
  }
  return shell::can_copy(from.c_str(), to.c_str());
}

}  // namespace cfgxml
