#include "faults/commands.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <string_view>

namespace phone_test {
namespace {

int copy_file(const std::string& from, const std::string& to) {
  std::ifstream source(from, std::ios::binary);
  if (!source) return 1;
  const std::string text{std::istreambuf_iterator<char>(source), {}};
  const int descriptor = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (descriptor < 0) return 1;
  const std::size_t piece = text.size() / 3 + 1;
  ssize_t written = 0;
  for (std::size_t at = 0; at < text.size(); at += static_cast<std::size_t>(written)) {
    written = ::write(descriptor, text.data() + at, std::min(piece, text.size() - at));
    if (written < 0) break;
  }
  return ::close(descriptor) == 0 && written >= 0 ? 0 : 1;
}

}  // namespace

int run_without_shell(const std::string& command) {
  constexpr std::string_view kRemove = "rm -f ";
  constexpr std::string_view kCopy = "cp -f \"";
  if (command.compare(0, kRemove.size(), kRemove) == 0) {
    return ::unlink(command.c_str() + kRemove.size()) == 0 || errno == ENOENT ? 0 : 1;
  }
  const std::size_t middle = command.find("\" \"");
  if (command.compare(0, kCopy.size(), kCopy) != 0 || middle == command.npos) return kNoCommand;
  const std::string to = command.substr(middle + 3, command.size() - middle - 4);
  return copy_file(command.substr(kCopy.size(), middle - kCopy.size()), to);
}

}  // namespace phone_test

/// Stands in for the C library's, through which the plug-in removes files. libFuzzer starts its own
/// helpers with it.
extern "C" int system(const char* command) {
  const int result = phone_test::run_without_shell(command);
  if (result != phone_test::kNoCommand) return result;
  return reinterpret_cast<int (*)(const char*)>(::dlsym(RTLD_NEXT, "system"))(command);
}
