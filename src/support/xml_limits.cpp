#include "support/xml_limits.h"

#include <cstring>
#include <string_view>

namespace cfgxml {
namespace {

constexpr int kMostAttributes = 1000;
constexpr int kMostLooseReferences = 1000;
constexpr std::size_t kLongestReference = 16;

/// The parts of a document that may hold any sign up to their end.
struct Opaque {
  std::string_view begin;
  const char* end;
};

constexpr Opaque kOpaque[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<!", ">"}, {"<?", "?>"}};

const char* after(const char* text, std::string_view part) { return text + part.size(); }

bool starts_with(const char* text, std::string_view part) {
  return std::strncmp(text, part.data(), part.size()) == 0;
}

/// Behind the part that starts at this "<" and is no tag; nullptr for a tag.
const char* skip_opaque(const char* text) {
  if (text[1] != '!' && text[1] != '?') return nullptr;
  for (const Opaque& part : kOpaque) {
    if (!starts_with(text, part.begin)) continue;
    const char* end = std::strstr(after(text, part.begin), part.end);
    return end != nullptr ? after(end, part.end) : std::strchr(text, '\0');
  }
  return nullptr;
}

/// Behind the tag that starts here, or at the text's end; counts its attributes by their values.
const char* skip_tag(const char* tag, int& attributes) {
  for (; *tag != '\0' && *tag != '>'; ++tag) {
    if (*tag != '"' && *tag != '\'') continue;
    const char* end = std::strchr(tag + 1, *tag);
    if (end == nullptr) return std::strchr(tag, '\0');
    ++attributes;
    tag = end;
  }
  return tag;
}

bool few_attributes(const char* text) {
  while ((text = std::strchr(text, '<')) != nullptr) {
    if (const char* behind = skip_opaque(text)) {
      text = behind;
      continue;
    }
    int attributes = 0;
    text = skip_tag(text, attributes);
    if (attributes > kMostAttributes) return false;
  }
  return true;
}

bool few_loose_references(const char* text) {
  int loose = 0;
  for (; (text = std::strstr(text, "&#")) != nullptr; text += 2) {
    if (std::memchr(text, ';', ::strnlen(text, kLongestReference)) != nullptr) continue;
    if (++loose > kMostLooseReferences) return false;
  }
  return true;
}

}  // namespace

bool within_limits(const char* text) { return few_attributes(text) && few_loose_references(text); }

}  // namespace cfgxml
