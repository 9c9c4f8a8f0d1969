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

/// Behind the part that starts here and may hold any sign; nullptr when none starts here.
const char* skip_opaque(const char* text) {
  if (text[0] != '<' || (text[1] != '!' && text[1] != '?')) return nullptr;
  for (const Opaque& part : kOpaque) {
    if (!starts_with(text, part.begin)) continue;
    const char* end = std::strstr(after(text, part.begin), part.end);
    return end != nullptr ? after(end, part.end) : std::strchr(text, '\0');
  }
  return nullptr;
}

/// At the end of the tag that starts here, or at the text's; counts its attributes by their values.
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

int loose_references(std::string_view part) {
  int loose = 0;
  for (std::size_t at = 0; (at = part.find("&#", at)) != std::string_view::npos; at += 2) {
    if (part.substr(at, kLongestReference).find(';') == std::string_view::npos) ++loose;
  }
  return loose;
}

}  // namespace

bool within_limits(const char* text) {
  int loose = 0;
  while (*text != '\0') {
    if (const char* behind = skip_opaque(text)) {
      text = behind;
      continue;
    }
    int attributes = 0;
    const char* end = *text == '<' ? skip_tag(text, attributes) : text + std::strcspn(text, "<");
    loose += loose_references({text, static_cast<std::size_t>(end - text)});
    if (attributes > kMostAttributes || loose > kMostLooseReferences) return false;
    text = end;
  }
  return true;
}

}  // namespace cfgxml
