#include "xmlbrowser/tag_names.h"

#include <cfgxml/host.h>

#include "support/text.h"

namespace cfgxml::xmlbrowser {
namespace {

constexpr int kSection = 46;

constexpr const char* kDefaults[] = {"IPPhone", "MenuItem", "MenuItem",  "Prompt",
                                     "URI",     "Prompt",   "Telephone", "Presence"};

}  // namespace

void TagNames::read(std::initializer_list<Tag> tags) {
  for (const Tag tag : tags) {
    const int item = static_cast<int>(tag);
    auto& name = names_[item];
    copy_text(name, kDefaults[item]);
    if (source_ == Source::kConfiguration) {
      cfg_get_string(kSection, item, name, sizeof name, kDefaults[item]);
    }
  }
}

bool TagNames::match(const char* element, const char* fixed, Tag tag) const {
  return equal_ignoring_case(element, fixed) ||
         (tag != Tag::kNone && equal_ignoring_case(element, name(tag)));
}

bool FixedNames::match(const char* element, const char* fixed, Tag /*tag*/) {
  return equal_ignoring_case(element, fixed);
}

bool ExactNames::match(const char* element, const char* fixed, Tag /*tag*/) {
  return rl_strcmp(element, fixed) == 0;
}

}  // namespace cfgxml::xmlbrowser
