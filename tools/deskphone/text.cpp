#include "text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cwchar>

#include "failure.h"

namespace deskphone {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// One character at the start of a text: how many bytes it has and what it is.
struct Character {
  std::size_t bytes;
  char32_t code;
  bool valid;
};

/// The length that a leading byte announces, 0 when it is none.
std::size_t announced_length(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

Character first_character(std::string_view text) {
  constexpr Character kBroken = {1, 0xFFFD, false};
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = announced_length(lead);
  if (length == 0 || length > text.size()) return kBroken;
  char32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0u) != 0x80u) return kBroken;
    code = code << 6u | (byte & 0x3Fu);
  }
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (code < kLeast[length] || code > 0x10FFFF || surrogate) return kBroken;
  return {length, code, true};
}

/// True for the characters that move the cursor or turn the writing direction.
bool is_control(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

std::size_t width_of(char32_t code) {
  const int width = ::wcwidth(static_cast<wchar_t>(code));
  return width > 0 ? static_cast<std::size_t>(width) : 0;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const Character character = first_character(text);
    if (character.valid && !is_control(character.code)) {
      result += text.substr(0, character.bytes);
    } else {
      result += kReplacement;
    }
    text.remove_prefix(character.bytes);
  }
  return result;
}

std::size_t display_width(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = first_character(text);
    width += width_of(character.code);
    text.remove_prefix(character.bytes);
  }
  return width;
}

std::string fit(const std::string& text, std::size_t columns) {
  std::string_view rest = text;
  std::string result;
  std::size_t used = 0;
  while (!rest.empty()) {
    const Character character = first_character(rest);
    if (used + width_of(character.code) > columns) break;
    used += width_of(character.code);
    result += rest.substr(0, character.bytes);
    rest.remove_prefix(character.bytes);
  }
  return result.append(columns - used, ' ');
}

std::string counted(std::size_t count, const std::string& plural) {
  if (count != 1) return fmt::format("{} {}", count, plural);
  const std::size_t length = plural.size();
  const bool in_y = length > 3 && plural.compare(length - 3, 3, "ies") == 0;
  return "1 " + (in_y ? plural.substr(0, length - 3) + "y" : plural.substr(0, length - 1));
}

bool is_unsafe_path(const std::string& path) {
  constexpr std::string_view kLeavesQuotes = "\"$`\\";
  return std::any_of(path.begin(), path.end(), [&](char sign) {
    const auto byte = static_cast<unsigned char>(sign);
    return byte < 0x20 || byte == 0x7F || kLeavesQuotes.find(sign) != std::string_view::npos;
  });
}

void check_text(const char* argument, const std::string& text, std::size_t capacity) {
  if (text.size() >= capacity) {
    throw Failure(fmt::format("{} is {} bytes long; the phone keeps {}. Give a shorter text.",
                              argument, text.size(), capacity - 1));
  }
  for (std::string_view rest = text; !rest.empty();) {
    const Character character = first_character(rest);
    if (!character.valid || is_control(character.code)) {
      throw Failure(
          fmt::format("{} holds a control character or bytes that are not UTF-8. Give "
                      "plain text.",
                      argument));
    }
    rest.remove_prefix(character.bytes);
  }
}

}  // namespace deskphone
