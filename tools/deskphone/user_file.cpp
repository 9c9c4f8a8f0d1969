#include "user_file.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <utility>

#include "failure.h"
#include "runtime/files.h"
#include "text.h"

namespace deskphone {
namespace fs = std::filesystem;

void check_file(const fs::path& file) {
  const std::string name = printable(file.string());
  if (is_unsafe_path(file.string())) {
    throw Failure(
        fmt::format("The path of {} holds a double quote, \"$\", a backquote, a backslash or a "
                    "control character, which the phone refuses. Rename the file.",
                    name));
  }
  std::error_code error;
  if (!fs::exists(file, error)) {
    throw Failure(fmt::format("There is no file {}. Check the path.", name));
  }
  if (!fs::is_regular_file(file, error)) {
    throw Failure(fmt::format("{} is not a file. Give the path of a file.", name));
  }
  if (::access(file.c_str(), R_OK) != 0) {
    throw Failure(fmt::format("{} can not be read. Check its permissions.", name));
  }
  if (fs::file_size(file, error) == 0) {
    throw Failure(fmt::format("{} is empty. Give a file with content.", name));
  }
}

Target::Target(fs::path file) : file_(std::move(file)) {
  const fs::path folder = file_.parent_path();
  std::error_code error;
  if (folder.empty() || fs::is_directory(folder, error)) return;
  throw Failure(fmt::format("There is no folder {}. Create it, or check the path.",
                            printable(folder.string())));
}

bool Target::is_output() const {
  struct stat file {};
  struct stat output {};
  return ::stat(file_.c_str(), &file) == 0 && ::fstat(STDOUT_FILENO, &output) == 0 &&
         file.st_dev == output.st_dev && file.st_ino == output.st_ino;
}

void Target::write(const std::string& content) const {
  std::error_code error;
  const fs::file_status status = fs::symlink_status(file_, error);
  const bool replaceable = !fs::exists(status) ||
                           (fs::is_regular_file(status) && fs::hard_link_count(file_, error) == 1);
  if (replaceable ? !host::files::replace(fs::absolute(file_), content)
                  : !(std::ofstream(file_) << content).flush()) {
    fail();
  }
}

void Target::fail() const {
  throw Failure(fmt::format("{} can not be written. Check the folder and its permissions.",
                            printable(file_.string())));
}

Upload::Upload(const fs::path& file) {
  check_file(file);
  const std::string extension = file.extension().string();
  const bool csv = extension == ".csv" || extension == ".CSV";
  copy_ = folder_.path() / (csv ? "upload.csv" : "upload.xml");
  std::error_code error;
  fs::copy_file(file, copy_, error);
  if (error) {
    throw Failure(fmt::format("{} can not be copied to {}: {}.", file.string(), copy_.string(),
                              error.message()));
  }
}

}  // namespace deskphone
