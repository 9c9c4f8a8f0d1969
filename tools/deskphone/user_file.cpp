#include "user_file.h"

#include <fmt/format.h>
#include <unistd.h>

#include <string>

#include "failure.h"
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
