#include "support/xml_input.h"

#include <cstring>
#include <string_view>

namespace cfgxml {
namespace {

constexpr int kMostAttributes = 1000;
constexpr int kMostOpenReferences = 1000;

constexpr std::string_view kEntities[] = {"quot;", "amp;", "apos;", "lt;", "gt;"};

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

/// After the part that starts here and may hold any sign; nullptr when none starts here.
const char* skip_opaque(const char* text) {
  if (text[0] != '<' || (text[1] != '!' && text[1] != '?')) return nullptr;
  for (const Opaque& part : kOpaque) {
    if (!starts_with(text, part.begin)) continue;
    const char* end = std::strstr(after(text, part.begin), part.end);
    return end != nullptr ? after(end, part.end) : std::strchr(text, '\0');
  }
  return nullptr;
}

/// True when what follows an "&" makes an entity or a closed reference of it.
bool closes(const char* text) {
  for (const std::string_view entity : kEntities) {
    if (starts_with(text, entity)) return true;
  }
  if (text[0] != '#') return false;
  const bool hex = text[1] == 'x';
  const char* digits = text + (hex ? 2 : 1);
  const char* end = digits + std::strspn(digits, hex ? "0123456789abcdefABCDEF" : "0123456789");
  return end != digits && *end == ';';
}

/// One pass over a document.
class Preparation {
 public:
  Preparation(const char* text, std::string& escaped) : copied_(text), escaped_(escaped) {}

  bool pass(const char* text) {
    while (text != nullptr && *text != '\0') {
      if (const char* end = skip_opaque(text)) {
        text = end;
      } else {
        text = *text == '<' ? pass_tag(text) : pass_text(text, text + std::strcspn(text, "<"));
      }
    }
    if (!escaped_.empty() && text != nullptr) escaped_.append(copied_, text);
    return text != nullptr;
  }

 private:
  /// At the end of the tag that starts here, or at the document's; every quoted text is the value
  /// of an attribute. nullptr beyond the limits.
  const char* pass_tag(const char* tag) {
    int attributes = 0;
    for (; *tag != '\0' && *tag != '>'; ++tag) {
      if (*tag != '"' && *tag != '\'') continue;
      const char* end = std::strchr(tag + 1, *tag);
      if (end == nullptr) return std::strchr(tag, '\0');
      if (++attributes > kMostAttributes) return nullptr;
      tag = pass_text(tag + 1, end);
      if (tag == nullptr) return nullptr;
    }
    return tag;
  }

  /// At the text's end; nullptr beyond the limit.
  const char* pass_text(const char* text, const char* end) {
    int open = 0;
    while (const void* found = std::memchr(text, '&', static_cast<std::size_t>(end - text))) {
      text = static_cast<const char*>(found) + 1;
      if (closes(text)) continue;
      if (*text == '#' && ++open > kMostOpenReferences) return nullptr;
      escaped_.append(copied_, text).append("amp;");
      copied_ = text;
    }
    return end;
  }

  const char* copied_;  // what stands before it is in escaped_, once anything is
  std::string& escaped_;
};

}  // namespace

bool prepare_xml(const char* text, std::string& escaped) {
  return Preparation(text, escaped).pass(text);
}

}  // namespace cfgxml
