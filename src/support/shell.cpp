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

/// Formats the removal, or logs why it is refused.
template <std::size_t Capacity>
bool format_removal(char (&command)[Capacity], const char* path) {
  if (is_unsafe(path, kStartsWord) ||
      !fits(std::snprintf(command, Capacity, "rm -f %s", path), Capacity)) {
    rl_log_err("%s failed: unsafe path <%s>.", __func__, path);
    return false;
  }
  return true;
}

/// Formats the copy, or logs why it is refused.
template <std::size_t Capacity>
bool format_copy(char (&command)[Capacity], const char* source, const char* destination) {
  if (is_unsafe(source, kLeavesQuotes) || is_unsafe(destination, kLeavesQuotes) ||
      !fits(std::snprintf(command, Capacity, "cp -f \"%s\" \"%s\"", source, destination),
            Capacity)) {
    rl_log_err("%s failed: unsafe path <%s>.", __func__, source);
    return false;
  }
  return true;
}

}  // namespace

bool remove_file(const char* path) {
  char command[256];
  // The path was checked above, and the command is the published one.
  return format_removal(command, path) && std::system(command) == 0;  // NOLINT(cert-env33-c)
}

int remove_file(const char* path, HostWords words) {
  char command[256];
  if (!format_removal(command, path)) return kRefused;
  return rl_system_ex(command, words.first, words.second);
}

int copy_file(const char* source, const char* destination, HostWords words) {
  char command[1024];
  if (!format_copy(command, source, destination)) return kRefused;
  return rl_system_ex(command, words.first, words.second);
}

bool can_copy(const char* source, const char* destination) {
  char command[1024];
  return format_copy(command, source, destination);
}

}  // namespace cfgxml::shell
