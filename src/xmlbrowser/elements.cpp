#include "xmlbrowser/elements.h"

#include <string_view>

#include "xmlbrowser/attributes.h"
#include "xmlbrowser/substitution.h"

namespace cfgxml::xmlbrowser {
namespace {

constexpr char kBlanks[] = "\t\n\r ";

constexpr ElementRule<RecordTarget<XML_SOFTKEY_T>> kSoftKeyElements[] = {
    {"Label", Tag::kNone, nonempty_text_to<&XML_SOFTKEY_T::Label>},
    {"URI", Tag::kNone, element_text_to<&XML_SOFTKEY_T::URI>},
};

/// A title of blanks alone leaves the field as it was.
void set_title(char (&title)[64], std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return;
  const std::size_t last = text.find_last_not_of(kBlanks);
  text = text.substr(first, last - first + 1);
  text = text.substr(0, cut_at(text, sizeof title - 1));
  rl_memcpy(title, text.data(), text.size());
  title[text.size()] = '\0';
  rl_strtrim(title);
}

}  // namespace

void read_title(const XMLElement& element, EmptyTitle empty, TitleFields fields) {
  const char* text = element.GetText();
  if (text == nullptr && empty == EmptyTitle::kPassedOver) return;
  if (text != nullptr) {
    set_title(fields.title, text);
  } else {
    copy_text(fields.title, "\r\n");
  }
  update_flag(element, "wrap", fields.wrap);
  update_flag(element, "showlistcount", fields.showlistcount);
}

void read_soft_key(const XMLElement& element, XML_SOFTKEY_T (&keys)[CFGXML_SOFT_KEY_CAPACITY]) {
  const char* index = element.Attribute("index");
  const std::int64_t slot = index != nullptr ? std::int64_t{rl_atoi(index)} - 1 : 0;
  if (slot < 0 || slot >= CFGXML_SOFT_KEY_CAPACITY) return;
  RecordTarget<XML_SOFTKEY_T> key{&keys[slot]};
  read_children(element, kSoftKeyElements, FixedNames(), key);
}

void read_option(const XMLElement& element, XML_OPTION_T& option) {
  copy_text(option.value, element.GetText());
  if (const char* text = element.Attribute("text")) copy_text(option.text, text);
}

void number_all(char (&field)[64], const char* number) {
  char numbered[sizeof field];  // the text does not get longer
  substitute(field, kAll, number, numbered);
  copy_text(field, numbered);
}

}  // namespace cfgxml::xmlbrowser
