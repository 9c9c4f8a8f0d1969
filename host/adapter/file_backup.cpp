#include "adapter/file_backup.h"

#include <cfgxml/host.h>

#include <optional>
#include <string>

#include "runtime/files.h"

namespace host {
namespace {

namespace fs = std::filesystem;

fs::path copy_of(const fs::path& file) {
  fs::path copy = file;
  copy += ".before-import";
  return copy;
}

/// Where a link at the path leads, else the path.
fs::path target_of(const fs::path& file) {
  std::error_code error;
  const fs::path target = fs::weakly_canonical(file, error);
  return error ? file : target;
}

}  // namespace

FileBackup::FileBackup(const fs::path& file) : file_(target_of(file)) {
  const std::optional<std::string> content = files::read(file_);
  existed_ = content.has_value();
  std::error_code error;
  safe_ = existed_ ? files::replace(copy_of(file_), *content) : !fs::exists(file_, error) && !error;
  if (existed_ && !safe_) fs::remove(copy_of(file_), error);  // or it would be taken for a good one
}

FileBackup::~FileBackup() {
  std::error_code error;
  if (keep_change_) {
    // Synced, or a cut could bring the copy back, and with it the old file over later changes.
    fs::remove(copy_of(file_), error);
    files::sync(file_.parent_path());
  } else if (existed_) {
    if (safe_) recover(file_);
  } else if (safe_) {
    fs::remove(file_, error);
  }
}

void FileBackup::recover(const fs::path& linked) {
  const fs::path file = target_of(linked);
  std::error_code error;
  if (!fs::exists(copy_of(file), error)) return;
  fs::rename(copy_of(file), file, error);
  files::sync(file.parent_path());
  if (error) rl_log_err("<%s> can not be put back.", file.c_str());
}

}  // namespace host
