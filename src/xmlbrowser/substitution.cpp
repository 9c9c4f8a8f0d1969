#include "xmlbrowser/substitution.h"

#include <cfgxml/xmlbrowser.h>

#include <cstdint>
#include <limits>

#include "support/chain.h"
#include "support/text.h"

namespace cfgxml::xmlbrowser {
namespace {

/// Bytes that hold the text with a new string in the place of every character, and no fewer than
/// the text itself takes.
std::uint64_t scratch_size(std::uint64_t text, std::uint64_t old_text, std::uint64_t new_text) {
  return new_text > old_text ? text * (new_text - old_text + 1) + 1 : text + 1;
}

/// A zero-filled text, or nullptr when memory is out or the size is no size.
HostBlock<char> new_text(std::uint64_t size) {
  if (size > std::numeric_limits<std::size_t>::max()) return nullptr;
  HostBlock<char> text(static_cast<char*>(rl_malloc(static_cast<std::size_t>(size))));
  if (text != nullptr) rl_memset(text.get(), 0, static_cast<std::size_t>(size));
  return text;
}

}  // namespace

void substitute(const char* text, const char* old_text, const char* new_text, char* result) {
  const std::size_t old_length = rl_strlen(old_text);
  const std::size_t new_length = rl_strlen(new_text);
  while (*text != '\0') {
    if (rl_strncmp(text, old_text, old_length) == 0) {
      rl_memcpy(result, new_text, new_length);
      result += new_length;
      text += old_length;
    } else {
      *result++ = *text++;
    }
  }
  *result = '\0';
}

}  // namespace cfgxml::xmlbrowser

int xmlbrowser_str_replace(char* text, int capacity, const char* old_text, const char* new_text) {
  using namespace cfgxml;
  if (text == nullptr || old_text == nullptr || new_text == nullptr) return -1;
  if (*old_text == '\0' || capacity < 1) {
    rl_log_err("%s failed: nothing to find, or no room.", __func__);
    return -1;
  }
  const HostBlock<char> scratch = xmlbrowser::new_text(
      xmlbrowser::scratch_size(rl_strlen(text), rl_strlen(old_text), rl_strlen(new_text)));
  if (scratch == nullptr) return -1;
  xmlbrowser::substitute(text, old_text, new_text, scratch.get());
  copy_text(text, static_cast<std::size_t>(capacity), scratch.get());
  return 0;
}
