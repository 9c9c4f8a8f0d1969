#include "support/shell.h"

#include <cfgxml/host.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace cfgxml::shell {
namespace {

constexpr int kRefused = -1;
constexpr std::string_view kLeavesQuotes = "\"$`\\";
constexpr std::string_view kStartsWord = " '\"$`\\;&|<>()[]{}*?!#~=%^";

/// True when the path holds a control character or one of the given signs, or could be an option.
bool is_unsafe(std::string_view path, std::string_view signs) {
  if (path.empty() || path.front() == '-') return true;
  for (const char sign : path) {
    const auto byte = static_cast<unsigned char>(sign);
    if (byte < 0x20 || byte == 0x7f || signs.find(sign) != std::string_view::npos) return true;
  }
  return false;
}

/// True when snprintf wrote the whole command.
bool fits(int length, std::size_t capacity) {
  return length >= 0 && static_cast<std::size_t>(length) < capacity;
}

using RemovalCommand = char[256];

/// Formats the removal, or logs why it is refused.
bool format_removal(RemovalCommand& command, const char* path) {
  if (is_unsafe(path, kStartsWord) ||
      !fits(std::snprintf(command, sizeof command, "rm -f %s", path), sizeof command)) {
    rl_log_err("%s failed: unsafe path <%s>.", __func__, path);
    return false;
  }
  return true;
}

using CopyCommand = char[1024];

/// Formats the copy, or logs why it is refused.
bool format_copy(CopyCommand& command, const char* source, const char* destination) {
  if (is_unsafe(source, kLeavesQuotes) || is_unsafe(destination, kLeavesQuotes) ||
      !fits(std::snprintf(command, sizeof command, "cp -f \"%s\" \"%s\"", source, destination),
            sizeof command)) {
    rl_log_err("%s failed: unsafe path <%s>.", __func__, source);
    return false;
  }
  return true;
}

}  // namespace

bool remove_file(const char* path) {
  RemovalCommand command;
  // The path was checked above, and the command is the published one.
  return format_removal(command, path) && std::system(command) == 0;  // NOLINT(cert-env33-c)
}

int remove_file(const char* path, HostWords words) {
  RemovalCommand command;
  if (!format_removal(command, path)) return kRefused;
  return rl_system_ex(command, words.first, words.second);
}

bool can_copy(const char* source, const char* destination) {
  CopyCommand command;
  return format_copy(command, source, destination);
}

int copy_file(const char* source, const char* destination, HostWords words) {
  CopyCommand command;
  if (!format_copy(command, source, destination)) return kRefused;
  return rl_system_ex(command, words.first, words.second);
}

}  // namespace cfgxml::shell
