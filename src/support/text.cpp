#include "support/text.h"

#include <cstring>

namespace cfgxml {
namespace {

/// True for the second and later bytes of a UTF-8 character.
bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

bool is_utf8(std::string_view text) {
  constexpr std::uint32_t kLeast[] = {0, 0x80, 0x800, 0x10000};  // by the number of later bytes
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    if (lead < 0x80) continue;
    if (lead < 0xc2 || lead > 0xf4) return false;
    const int later = lead < 0xe0 ? 1 : lead < 0xf0 ? 2 : 3;
    std::uint32_t code = lead & (0x3fU >> later);
    for (int i = 0; i < later; ++i, ++at) {
      if (at == text.size() || !continues(text[at])) return false;
      code = code << 6 | (static_cast<unsigned char>(text[at]) & 0x3fU);
    }
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    if (code < kLeast[later] || code > 0x10ffff || surrogate) return false;
  }
  return true;
}

}  // namespace

std::size_t cut_at(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes || !continues(text[bytes]) || !is_utf8(text)) return bytes;
  while (continues(text[bytes])) --bytes;
  return bytes;
}

std::size_t capacity_for(const char* text, std::size_t capacity) {
  if (text == nullptr || ::strnlen(text, capacity) < capacity) return capacity;
  return cut_at(text, capacity - 1) + 1;
}

}  // namespace cfgxml
