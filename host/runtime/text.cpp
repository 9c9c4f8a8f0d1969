// Text: the C library's functions, with the two bounded copies and the number reader taking NULL.
#include <cfgxml/host.h>
#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

}  // namespace

/// 0, or ERANGE when the text was cut or the destination has no room for a terminator.
int rl_strcpy_s(char* destination, size_t capacity, const char* source) {
  if (capacity == 0) return ERANGE;
  const size_t length = source != nullptr ? ::strnlen(source, capacity) : 0;
  const size_t kept = std::min(length, capacity - 1);
  if (kept > 0) std::memcpy(destination, source, kept);
  destination[kept] = '\0';
  return kept < length ? ERANGE : 0;
}

int rl_strcat_s(char* destination, size_t capacity, const char* source) {
  const size_t used = ::strnlen(destination, capacity);
  return rl_strcpy_s(destination + used, capacity - used, source);
}

size_t rl_strlen(const char* text) { return std::strlen(text); }
int rl_strcmp(const char* left, const char* right) { return std::strcmp(left, right); }

int rl_strncmp(const char* left, const char* right, size_t size) {
  return std::strncmp(left, right, size);
}

int rl_strcasecmp(const char* left, const char* right) { return ::strcasecmp(left, right); }

char* rl_strstr(const char* text, const char* part) {
  return const_cast<char*>(std::strstr(text, part));
}

char* rl_strtrim(char* text) {
  const std::string_view whole = text;
  const size_t first = whole.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) {
    *text = '\0';
    return text;
  }
  const size_t length = whole.find_last_not_of(kWhiteSpace) + 1 - first;
  std::memmove(text, text + first, length);
  text[length] = '\0';
  return text;
}

int rl_str_isempty(const char* text) { return text == nullptr || *text == '\0' ? 1 : 0; }

/// A value that does not fit gives the nearest one that does.
int rl_atoi(const char* text) {
  if (text == nullptr) return 0;
  constexpr long long kLeast = std::numeric_limits<int>::min();
  constexpr long long kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::strtoll(text, nullptr, 10), kLeast, kMost));
}
